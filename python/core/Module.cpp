// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The four functions of the library as the package `tactus` calls them. Problems come back by name;
// the package makes exceptions and sentences of them.

#include "AnalysisRun.h"
#include "SongDict.h"

#include <pybind11/numpy.h>
#include <pybind11/stl.h>

namespace py = pybind11;
using py::literals::operator""_a;

namespace {

/// The problem by its name, its system error, and what was heard. The name is empty for none.
py::tuple Answer(CAnalysisRun::CHear hear, py::object const& progress, py::object const& cancel,
                 bool envelopes) {
    tactus::Options options;
    options.keepEnvelopes = envelopes;
    tactus::Song song;
    song.problem = tactus::Problem::Cancelled;
    if (!IsSet(cancel)) {
        CAnalysisRun run(std::move(hear), options, !progress.is_none());
        song = run.Wait(progress, cancel);
    }
    return py::make_tuple(NameOf(song.problem), song.systemError, SongDict(song));
}

py::tuple AnalyzeFile(py::bytes const& path, py::object const& progress, py::object const& cancel,
                      bool envelopes) {
    auto hear = [path = std::string(path)](tactus::Options const& options) {
        return tactus::analyze(std::filesystem::path(path), options);
    };
    return Answer(std::move(hear), progress, cancel, envelopes);
}

/// Takes a copy of the samples: another thread of Python may write into the array meanwhile.
py::tuple AnalyzeSamples(py::array_t<float, py::array::c_style> const& samples, unsigned rate,
                         py::object const& progress, py::object const& cancel, bool envelopes) {
    auto own =
        std::make_shared<std::vector<float> const>(samples.data(), samples.data() + samples.size());
    auto hear = [own, rate](tactus::Options const& options) {
        return tactus::analyze(std::span<float const>(*own), rate, options);
    };
    return Answer(std::move(hear), progress, cancel, envelopes);
}

/// Another encoding than UTF-8 never comes through, but a tag's bytes are a stranger's.
py::str TextOf(std::string const& utf8) {
    auto const size = static_cast<py::ssize_t>(utf8.size());
    return py::reinterpret_steal<py::str>(PyUnicode_DecodeUTF8(utf8.data(), size, "replace"));
}

py::dict ReadTags(py::bytes const& path) {
    std::filesystem::path const own{std::string(path)};
    tactus::Tags tags;
    {
        py::gil_scoped_release const released;
        tags = tactus::readTags(own);
    }
    return py::dict("title"_a = TextOf(tags.title), "artist"_a = TextOf(tags.artist),
                    "album"_a = TextOf(tags.album), "key"_a = TextOf(tags.key),
                    "tempo_text"_a = TextOf(tags.tempoText),
                    "tempo"_a = tags.tempo > 0.0 ? py::object(py::float_(tags.tempo)) : py::none());
}

/// Returns: the refusal by its name; empty when the tempo is stored.
char const* StoreTempo(py::bytes const& path, CEvidence const& evidence, double tempo) {
    std::filesystem::path const own{std::string(path)};
    tactus::Song song;
    song.evidence = evidence.m_pEvidence;
    py::gil_scoped_release const released;
    return NameOf(tactus::storeTempo(own, song, tempo));
}

} // namespace

PYBIND11_MODULE(_core, module) {
    py::class_<CEvidence>(module, "Evidence");
    module.attr("__version__") = TACTUS_VERSION;
    module.def("analyze_file", &AnalyzeFile, "path"_a, "progress"_a, "cancel"_a, "envelopes"_a);
    module.def("analyze_samples", &AnalyzeSamples, "samples"_a, "rate"_a, "progress"_a, "cancel"_a,
               "envelopes"_a);
    module.def("read_tags", &ReadTags, "path"_a);
    module.def("store_tempo", &StoreTempo, "path"_a, "evidence"_a, "tempo"_a);
}
