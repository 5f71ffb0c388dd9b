// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "support/Process.h"

#include "support/TempFolder.h"

#include <cerrno>
#include <fcntl.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

CProcessResult RunProcess(CProcessSetup const& setup) {
    CTempFolder const folder;
    std::string const outPath = setup.m_sOutput.empty() ? folder / "out" : setup.m_sOutput;
    std::string const errPath = folder / "err";
    std::string const inPath = setup.m_sInput.empty() ? "/dev/null" : setup.m_sInput;

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    int const create = O_WRONLY | O_CREAT | O_TRUNC;
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, inPath.c_str(), O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, outPath.c_str(), create, 0600);
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
    pid_t process = 0;
    int const error =
        posix_spawnp(&process, pointers.front(), &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        throw std::runtime_error("can't start " + setup.m_vArguments.front());
    }
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    CProcessResult result;
    result.m_nExit = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.m_nSignal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    result.m_sOut = setup.m_sOutput.empty() ? ReadText(outPath) : "";
    result.m_sErr = ReadText(errPath);
    return result;
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
