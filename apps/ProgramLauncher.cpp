#include "ProgramLauncher.h"

#include "CommandLine.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <system_error>
#include <unistd.h>

int ProgramLauncher::Exec(const char* name, char** argv)
{
    std::error_code ec;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", ec);
    const std::string program = (ec ? std::filesystem::path(argv[0]).parent_path() : self.parent_path()) / name;
    // Nothing written so far may be lost with this process's buffers.
    std::cout.flush();
    std::fflush(stdout);
    execv(program.c_str(), argv);
    CommandLine::Error(std::string("cannot start ") + program + ": " + std::strerror(errno));
    return CommandLine::kExitFailure;
}
