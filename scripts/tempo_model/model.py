# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""The two logistic models: fitting, folds and measures.  Needs python3-numpy."""

import csv
import json
import zlib

import numpy

SAME = 0.04  # a reading within this part of the true tempo is right


class Song:
    """One line of tactus-tempo-features with what is known about the song."""

    def __init__(self, line, truth, group, corpus):
        self.file, self.group, self.corpus = line["file"], group, corpus
        self.truth = truth
        readings = line["readings"]
        self.bpm = numpy.array([r["bpm"] for r in readings])
        self.features = numpy.array([r["features"] for r in readings], dtype=float)
        self.song = numpy.array([r["song"] for r in readings], dtype=float)
        self.reported = line["reported"]
        self.right = None  # index of the right reading, or None
        if truth and readings:
            off = numpy.abs(self.bpm / truth - 1)
            if off.min() < SAME:
                self.right = int(off.argmin())


def read_songs(features, truth, corpus, group):
    """Songs of the file `features`; `truth` maps a file name to (bpm, row), `group(name, row)`."""
    songs = []
    with open(features, encoding="utf-8") as lines:
        for line in map(json.loads, lines):
            name = line["file"].rsplit("/", 1)[-1]
            if truth is None:
                songs.append(Song(line, None, group(name, None), corpus))
            elif name in truth:
                songs.append(Song(line, float(truth[name]["bpm"]), group(name, truth[name]), corpus))
    return songs


def read_truth(path):
    with open(path, encoding="utf-8") as table:
        return {row["file"].rsplit("/", 1)[-1]: row for row in csv.DictReader(table)}


def fit_readings(songs, ridge, weight=lambda song: 1.0):
    """Weights of the conditional logit: Newton's method with a ridge on standardised features."""
    songs = [s for s in songs if s.right is not None and len(s.bpm) > 1]
    spread = numpy.vstack([s.features for s in songs]).std(axis=0)
    spread[spread < 1e-6] = numpy.inf
    data = [(s.features / spread, s.right, weight(s)) for s in songs]

    def loss(w):
        total = ridge * (w @ w) / 2
        for x, right, share in data:
            sums = x @ w
            top = sums.max()
            total += share * (top + numpy.log(numpy.exp(sums - top).sum()) - sums[right])
        return total

    w = numpy.zeros(len(spread))
    for _ in range(60):
        gradient, hessian = ridge * w, ridge * numpy.eye(len(w))
        for x, right, share in data:
            p = softmax(x @ w)
            mean = p @ x
            gradient -= share * (x[right] - mean)
            hessian += share * ((x * p[:, None]).T @ x - numpy.outer(mean, mean))
        step = descend(loss, w, gradient, numpy.linalg.solve(hessian, gradient))
        w = w - step
        if numpy.abs(step).max() < 1e-6:
            return w / spread
    raise ArithmeticError("the fit of the readings did not converge")


def descend(loss, w, gradient, step):
    """Newton's step, halved until it lowers the loss: full steps overshoot far from the minimum."""
    now, slope = loss(w), gradient @ step
    for _ in range(40):
        if loss(w - step) <= now - 1e-4 * slope + 1e-9:
            return step
        step, slope = step / 2, slope / 2
    return step


def fit_logistic(x, y, ridge):
    """Weights and, last, the constant of a logistic regression with equal say for both classes."""
    middle, spread = x.mean(axis=0), x.std(axis=0) + 1e-9
    z = numpy.hstack([(x - middle) / spread, numpy.ones((len(x), 1))])
    share = numpy.where(y, len(y) / (2 * y.sum()), len(y) / (2 * (~y).sum()))
    held = ridge * numpy.append(numpy.ones(x.shape[1]), 0)

    def loss(w):
        sums = z @ w
        return (share * (numpy.logaddexp(0, sums) - y * sums)).sum() + held @ (w * w) / 2

    w = numpy.zeros(z.shape[1])
    for _ in range(60):
        p = 1 / (1 + numpy.exp(-z @ w))
        gradient = held * w - z.T @ (share * (y - p))
        hessian = numpy.diag(held + 1e-9) + (z * (share * p * (1 - p))[:, None]).T @ z
        step = descend(loss, w, gradient, numpy.linalg.solve(hessian, gradient))
        w = w - step
        if numpy.abs(step).max() < 1e-6:
            break
    else:
        raise ArithmeticError("the fit of the confidence did not converge")
    raw = w[:-1] / spread
    return numpy.append(raw, w[-1] - raw @ middle)


def softmax(sums):
    p = numpy.exp(sums - sums.max())
    return p / p.sum()


def fold_of(group, folds):
    """A fold that the group's name alone decides."""
    return zlib.crc32(group.encode()) % folds


def cross_validate(songs, folds, ridge, weight=lambda song: 1.0):
    """Scores of every song by a model that saw nothing of its group."""
    scores = {}
    for fold in range(folds):
        train = [s for s in songs if fold_of(s.group, folds) != fold]
        w = fit_readings(train, ridge, weight)
        for s in songs:
            if fold_of(s.group, folds) == fold and len(s.bpm):
                scores[s] = softmax(s.features @ w)
    return scores


def among(songs, scores, count):
    """Part of the songs whose true tempo is among the first `count` candidates."""
    hits = 0
    for s in songs:
        if s in scores:
            first = numpy.argsort(-scores[s], kind="stable")[:count]
            hits += bool((numpy.abs(s.bpm[first] / s.truth - 1) < SAME).any())
    return hits / len(songs)


def reported_right(songs):
    return sum(abs(s.reported / s.truth - 1) < SAME for s in songs) / len(songs)


def reliability(songs, scores, edges=(0, .05, .1, .2, .3, .4, .5, .6, .7, .8, .9, .95, 1.0001)):
    """Rows of (from, to, candidates, mean score, part of them right), every candidate counted."""
    pairs = [(p, abs(bpm / s.truth - 1) < SAME)
             for s in songs if s in scores for p, bpm in zip(scores[s], s.bpm)]
    rows = []
    for low, high in zip(edges, edges[1:]):
        inside = [(p, right) for p, right in pairs if low <= p < high]
        if inside:
            rows.append((low, high, len(inside), sum(p for p, _ in inside) / len(inside),
                         sum(right for _, right in inside) / len(inside)))
    error = sum(n * abs(mean - right) for _, _, n, mean, right in rows) / max(1, len(pairs))
    return rows, error
