// The vrnmodel program run as a user runs it, through the shell, with what it
// prints kept for the test.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <string>

#include "ModelFileReader.h"

class CommandLineTest : public ::testing::Test {
protected:
    // The exit status of `vrnmodel ARGUMENTS`; its standard output goes to
    // `stdoutTo` (a file of the scratch directory when empty).
    int Run(const std::string& arguments, const std::string& stdoutTo = "") {
        const std::string command = std::string(VRNMODEL_PATH) + " " + arguments + " > " +
                                    (stdoutTo.empty() ? m_out.File("out.txt") : stdoutTo) + " 2> " +
                                    m_out.File("err.txt");
        const int status = std::system(command.c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    // The exit status of a shell command line in which "vrnmodel" is the
    // program under test; its standard error is kept.
    int Shell(std::string commandLine) {
        const std::string program = VRNMODEL_PATH;
        for (std::size_t at = commandLine.find("vrnmodel"); at != std::string::npos;
             at = commandLine.find("vrnmodel", at + program.size()))
            commandLine.replace(at, 8, program);
        const std::string command = "( " + commandLine + " ) 2> " + m_out.File("err.txt");
        const int status = std::system(command.c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    std::string Out() { return ReadBytes(m_out.File("out.txt")); }
    std::string Err() { return ReadBytes(m_out.File("err.txt")); }

    CScratchDir m_dir;  // the test's own files

private:
    CScratchDir m_out;  // what the program printed, apart from the test's files
};
