# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""A cluster of processes on this machine: nothing is lost, nothing is there twice."""

from __future__ import annotations

import json
import os
import pathlib
import signal
import subprocess
import sys
import time

import pytest
import tactus

pytest.importorskip("distributed")

import dask
from distributed import Client, LocalCluster
from tactus.cluster import _run
from tactus.cluster.__main__ import main
from tactus.cluster._inputs import EXTENSIONS, inputs
from tactus.cluster._plan import Limits, Plan, Shard
from tactus.cluster._run import Run
from tactus.cluster._work import lost

FILES = int(os.environ.get("TACTUS_CLUSTER_FILES", "30"))
KILLS = int(os.environ.get("TACTUS_CLUSTER_KILLS", "1"))


def links_to(track: pathlib.Path, folder: pathlib.Path, count: int) -> list[str]:
    folder.mkdir()
    paths = [folder / f"{i:04}.wav" for i in range(count)]
    for path in paths:
        os.link(track, path)
    return [str(path) for path in paths]


def records_in(folder: pathlib.Path) -> list[dict[str, object]]:
    """As `cat part-*.jsonl` gives them."""
    parts = sorted(folder.glob("part-*.jsonl"))
    return [json.loads(line) for part in parts for line in part.read_text().splitlines()]


def workers_of(process: int) -> list[int]:
    """Processes that the cluster has started, without the one that counts semaphores."""
    lists = pathlib.Path(f"/proc/{process}/task").glob("*/children")
    return [
        int(child)
        for children in lists
        for child in children.read_text().split()
        if b"spawn_main" in pathlib.Path(f"/proc/{child}/cmdline").read_bytes()
    ]


def cluster(*arguments: object) -> subprocess.Popen[str]:
    command = [sys.executable, "-m", "tactus.cluster", *map(str, arguments)]
    pipe = subprocess.PIPE
    return subprocess.Popen(command, stdout=pipe, stderr=pipe, text=True)


def test_killed_workers_cost_no_record(tmp_path: pathlib.Path, track: pathlib.Path) -> None:
    paths = links_to(track, tmp_path / "music", FILES)
    out = tmp_path / "out"
    arguments = ["--local", 2, "--shard-files", 2, "-o", out, tmp_path / "music"]
    run = cluster(*arguments)
    survivor = 0
    for i in range(KILLS):
        workers = []
        while len(workers) < 2 or len(list(out.glob("part-*.jsonl"))) <= i * FILES // 8:
            assert run.poll() is None
            time.sleep(0.002)
            workers = workers_of(run.pid)
        survivor = survivor or workers[0]
        os.kill(next(worker for worker in workers if worker != survivor), signal.SIGKILL)
    summary, _ = run.communicate()
    assert run.returncode == 0
    records = records_in(out)
    assert [record["path"] for record in records] == paths
    expected = tactus.analyze(paths[0]).to_dict()
    assert all({**record, "path": paths[0]} == expected for record in records)
    assert json.loads(summary)["files"] == FILES


def test_the_same_command_goes_on(
    tmp_path: pathlib.Path,
    track: pathlib.Path,
    monkeypatch: pytest.MonkeyPatch,
    capsys: pytest.CaptureFixture[str],
) -> None:
    paths = links_to(track, tmp_path / "music", 3)
    (tmp_path / "list").write_text("\n".join([paths[2], paths[0], str(tmp_path / "missing.wav")]))
    out = tmp_path / "out"
    with LocalCluster(processes=False, n_workers=1, dashboard_address="127.0.0.1:0") as local:
        where = ["cluster", "--scheduler", local.scheduler_address, "-o", str(out)]

        def run(*arguments: str) -> tuple[int, int]:
            """Its exit status, and how many files an earlier run had heard."""
            monkeypatch.setattr(sys, "argv", [*where, *arguments])
            status = main()
            return status, json.loads(capsys.readouterr().out)["earlier"]

        assert run("--files-from", str(tmp_path / "list")) == (1, 0)
        parts = {part: part.stat().st_mtime_ns for part in out.glob("part-*")}
        assert run(str(tmp_path / "music"), "--files-from", str(tmp_path / "list")) == (1, 3)
    assert {part: part.stat().st_mtime_ns for part in parts} == parts
    records = records_in(out)
    expected = [paths[2], paths[0], str(tmp_path / "missing.wav"), paths[1]]
    assert [record["path"] for record in records] == expected
    assert records[2]["error"]["code"] == "cannotOpen"


def kill_or_name(paths: list[str]) -> list[str]:
    """Work that no process survives when "poison" is among it."""
    if "poison" in paths:
        os.kill(os.getpid(), signal.SIGKILL)
    return [json.dumps({"path": path}) for path in paths]


def test_a_file_that_kills_its_workers_is_a_record_too(
    tmp_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    monkeypatch.setattr(_run, "ATTEMPTS", 2)
    plan = Plan.opened(str(tmp_path / "out"))
    assert plan is not None
    plan.add(["a", "poison", "b", "c"], Limits(bytes=1, files=3))
    settings = {
        "distributed.scheduler.allowed-failures": 0,
        "distributed.scheduler.worker-saturation": 1.0,
    }
    with dask.config.set(settings), LocalCluster(
        n_workers=1, threads_per_worker=1, dashboard_address="127.0.0.1:0", silence_logs=50
    ) as local, Client(local) as client:
        run = Run(client, plan, lambda count: None, kill_or_name)
        run.finish()
    records = records_in(tmp_path / "out")
    assert [record["path"] for record in records] == ["a", "poison", "b", "c"]
    assert [record.get("error") is not None for record in records] == [False, True, False, False]
    assert run.restarts >= 2  # The shard, and the file alone.


def test_folders_hold_the_files_that_the_command_line_finds(
    tmp_path: pathlib.Path, track: pathlib.Path, program: str
) -> None:
    names = [f"a.{extension}" for extension in [*EXTENSIONS, "txt", "jpg", "mid", "m3u"]]
    names += ["B.WAV", "._b.wav", ".wav", "wav", "@eaDir/a.wav", ".Trash-1/a.wav", "d.d/e f.wav"]
    for name in names:
        path = tmp_path / "music" / name
        path.parent.mkdir(parents=True, exist_ok=True)
        os.link(track, path)
    (tmp_path / "music" / "link").symlink_to(tmp_path / "music" / "d.d")
    (tmp_path / "music" / "linked.wav").symlink_to(track)
    command = [program, "analyze", "--format", "jsonl", str(tmp_path / "music")]
    lines = subprocess.run(command, capture_output=True, text=True).stdout.splitlines()
    found = inputs([str(tmp_path / "music")])
    assert sorted(found) == sorted(json.loads(line)["path"] for line in lines)
    assert inputs([found[0], str(tmp_path / "missing"), found[0]]) == [
        found[0],
        str(tmp_path / "missing"),
    ]


def test_shards_end_at_their_limits(tmp_path: pathlib.Path) -> None:
    for name, size in {"a": 40, "b": 70, "c": 20, "d": 5, "e": 5, "f": 200}.items():
        (tmp_path / name).write_bytes(bytes(size))
    plan = Plan.opened(str(tmp_path / "out"))
    assert plan is not None
    plan.add([str(tmp_path / name) for name in "abcdef"], Limits(bytes=100, files=3))
    names = [[os.path.basename(path) for path in shard.paths] for shard in plan.shards]
    assert names == [["a"], ["b", "c", "d"], ["e"], ["f"]]


def test_a_run_that_cannot_begin_says_why(
    tmp_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch, capsys: pytest.CaptureFixture[str]
) -> None:
    def run(*arguments: object) -> tuple[int, str]:
        monkeypatch.setattr(sys, "argv", ["cluster", "--local", "1", *map(str, arguments)])
        return main(), capsys.readouterr().err

    missing = tmp_path / "missing"
    status, told = run("-o", tmp_path / "a", "--files-from", missing)
    assert (status, "No such file or directory" in told, str(missing) in told) == (1, True, True)
    assert run("-o", tmp_path / "a", tmp_path)[0] == 2  # There is no music in it.
    plan = Plan.opened(str(tmp_path / "a"))
    assert plan is not None
    status, told = run("-o", tmp_path / "a", "a.wav")
    assert (status, "another run" in told) == (75, True)
    plan.close()


def test_a_shard_is_written_whole_or_not(tmp_path: pathlib.Path) -> None:
    plan = Plan.opened(str(tmp_path))
    assert plan is not None
    with pytest.raises(ValueError):
        plan.finish(Shard(0, ["a", "b"]), ["{}"])
    assert not list(tmp_path.glob("part-*"))


def test_a_lost_file_has_a_record_with_its_exact_name() -> None:
    record = json.loads(lost(os.fsdecode(b"/m/\xff a.wav")))
    assert record["error"]["code"] == "lost"
    assert (record["path"], record["uri"]) == ("/m/\ufffd a.wav", "file:///m/%FF%20a.wav")
