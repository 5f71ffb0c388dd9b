// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The functions of the library as the package `tactus` calls them. Problems come back by name;
// the package makes exceptions and sentences of them.

#include "AnalysisRun.h"
#include "SongDict.h"

#include <pybind11/numpy.h>
#include <pybind11/stl.h>

namespace py = pybind11;
using namespace pybind11::literals;

namespace {

/// The problem by its name, the system's error, the song, and what to hand back for more. The name
/// is empty for none.
py::tuple Answer(CAnalysisRun::CHear hear, std::filesystem::path path, py::object const& progress,
                 py::object const& cancel, bool envelopes) {
    tactus::Options options;
    options.keepEnvelopes = envelopes;
    CHeard heard{.m_path = std::move(path)};
    heard.m_song.problem = tactus::Problem::Cancelled;
    if (!IsSet(cancel)) {
        CAnalysisRun run(std::move(hear), options, !progress.is_none());
        heard.m_song = run.Wait(progress, cancel);
    }
    if (!heard.m_path.empty() && heard.m_song.problem != tactus::Problem::Cancelled) {
        py::gil_scoped_release const released;
        heard.m_tags = tactus::readTags(heard.m_path);
    }
    char const* const problem = NameOf(heard.m_song.problem);
    int const number = heard.m_song.systemError;
    py::dict song = SongDict(heard.m_song);
    song["tags"] = TagsDict(heard.m_tags);
    return py::make_tuple(problem, number, song, std::move(heard));
}

py::tuple AnalyzeFile(py::bytes const& path, py::object const& progress, py::object const& cancel,
                      bool envelopes) {
    std::filesystem::path const own{std::string(path)};
    auto hear = [own](tactus::Options const& options) { return tactus::analyze(own, options); };
    return Answer(std::move(hear), own, progress, cancel, envelopes);
}

/// Takes a copy of the samples: another thread of Python may write into the array meanwhile.
py::tuple AnalyzeSamples(py::array_t<float, py::array::c_style> const& samples, unsigned rate,
                         py::object const& progress, py::object const& cancel, bool envelopes) {
    auto own =
        std::make_shared<std::vector<float> const>(samples.data(), samples.data() + samples.size());
    auto hear = [own, rate](tactus::Options const& options) {
        return tactus::analyze(std::span<float const>(*own), rate, options);
    };
    return Answer(std::move(hear), {}, progress, cancel, envelopes);
}

std::string ToJson(CHeard const& heard) {
    py::gil_scoped_release const released;
    return tactus::toJson(heard.m_song, heard.m_path, heard.m_tags);
}

py::dict ReadTags(py::bytes const& path) {
    std::filesystem::path const own{std::string(path)};
    tactus::Tags tags;
    {
        py::gil_scoped_release const released;
        tags = tactus::readTags(own);
    }
    return TagsDict(tags);
}

/// Returns: the refusal by its name; empty when the tempo is stored.
char const* StoreTempo(py::bytes const& path, CHeard const& heard, double tempo) {
    std::filesystem::path const own{std::string(path)};
    py::gil_scoped_release const released;
    return NameOf(tactus::storeTempo(own, heard.m_song, tempo));
}

} // namespace

PYBIND11_MODULE(_core, module) {
    py::class_<CHeard> const heard(module, "Heard");
    module.attr("__version__") = TACTUS_VERSION;
    module.def("analyze_file", &AnalyzeFile, "path"_a, "progress"_a, "cancel"_a, "envelopes"_a);
    module.def("analyze_samples", &AnalyzeSamples, "samples"_a, "rate"_a, "progress"_a, "cancel"_a,
               "envelopes"_a);
    module.def("to_json", &ToJson, "heard"_a);
    module.def("read_tags", &ReadTags, "path"_a);
    module.def("store_tempo", &StoreTempo, "path"_a, "heard"_a, "tempo"_a);
}
