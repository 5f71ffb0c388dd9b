// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "support/Process.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

CProcess::CProcess(CProcessSetup const& setup)
    : m_sOutput(setup.m_sOutput.empty() ? m_folder / "out" : setup.m_sOutput) {
    std::string const errPath = m_folder / "err";
    std::string const inPath = setup.m_sInput.empty() ? "/dev/null" : setup.m_sInput;
    // They can be read from now on: under an emulator the program opens them at some later time.
    WriteText(errPath, "");
    if (setup.m_sOutput.empty()) {
        WriteText(m_sOutput, "");
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    int const create = O_WRONLY | O_CREAT | O_TRUNC;
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, inPath.c_str(), O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, m_sOutput.c_str(), create, 0600);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errPath.c_str(), create, 0600);
    if (!setup.m_sFolder.empty()) {
        posix_spawn_file_actions_addchdir_np(&actions, setup.m_sFolder.c_str());
    }
    std::vector<std::string> arguments = setup.m_vArguments;
    std::vector<char*> pointers;
    for (std::string& argument : arguments) {
        pointers.push_back(argument.data());
    }
    pointers.push_back(nullptr);
    int const error =
        posix_spawnp(&m_nProcess, pointers.front(), &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        m_bEnded = true;
        throw std::runtime_error("can't start " + setup.m_vArguments.front());
    }
}

CProcess::~CProcess() {
    if (!m_bEnded) {
        Signal(SIGKILL);
        (void)waitpid(m_nProcess, nullptr, 0);
    }
}

void CProcess::Signal(int signal) const {
    (void)kill(m_nProcess, signal);
}

bool CProcess::Catches(int signal) const {
    std::ifstream status("/proc/" + std::to_string(m_nProcess) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("SigCgt:")) {
            unsigned long long const caught = std::stoull(line.substr(7), nullptr, 16);
            return (caught >> static_cast<unsigned>(signal - 1) & 1U) != 0;
        }
    }
    return false;
}

std::string CProcess::Output() const {
    return ReadText(m_sOutput);
}

std::string CProcess::Errors() const {
    return ReadText(m_folder / "err");
}

CProcessResult CProcess::Wait() {
    int status = 0;
    while (waitpid(m_nProcess, &status, 0) < 0 && errno == EINTR) {
    }
    m_bEnded = true;
    CProcessResult result;
    result.m_nExit = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.m_nSignal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    result.m_sOut = m_sOutput.starts_with(m_folder.Path()) ? Output() : "";
    result.m_sErr = Errors();
    return result;
}

CProcessResult RunProcess(CProcessSetup const& setup) {
    return CProcess(setup).Wait();
}

CProcessResult RunProcess(std::vector<std::string> arguments) {
    CProcessSetup setup;
    setup.m_vArguments = std::move(arguments);
    return RunProcess(setup);
}

void Ffmpeg(std::vector<std::string> const& arguments) {
    std::vector<std::string> all = {"ffmpeg", "-nostdin", "-v", "error", "-y"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    CProcessResult const result = RunProcess(all);
    if (result.m_nExit != 0) {
        throw std::runtime_error("ffmpeg: " + result.m_sErr);
    }
}

std::string FfmpegEncode(std::string const& source, std::string const& target,
                         std::vector<std::string> const& options) {
    std::vector<std::string> arguments = {"-i", source};
    arguments.insert(arguments.end(), options.begin(), options.end());
    arguments.push_back(target);
    Ffmpeg(arguments);
    return target;
}
