// A database server process that a test starts and owns: spawned with a
// parent-death signal (the kernel stops it if the test process dies), waited
// for until it answers, and stopped when the object goes. Shared by the
// throw-away PostgreSQL and MariaDB servers.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "ModelFileReader.h"

class CServerProcess {
public:
    ~CServerProcess() { Stop(); }

    // Starts `args` (args[0] looked up in PATH) with its standard error to `log`.
    void Spawn(const std::vector<std::string>& args, const std::string& log, int stopSignal) {
        m_log = log;
        m_stopSignal = stopSignal;
        m_pid = fork();
        if (m_pid != 0) return;
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        std::freopen(log.c_str(), "w", stderr);
        std::vector<const char*> argv;
        for (const std::string& arg : args) argv.push_back(arg.c_str());
        argv.push_back(nullptr);
        execvp(argv[0], const_cast<char* const*>(argv.data()));
        _exit(127);
    }

    // Waits up to 30 s for `probe` (a shell command) to succeed; false with
    // the reason (the server's log) when the server stops or never answers.
    bool WaitReady(const std::string& probe, std::string& why) {
        for (int attempt = 0; attempt < 300; ++attempt) {
            if (std::system(probe.c_str()) == 0) return true;
            if (waitpid(m_pid, nullptr, WNOHANG) == m_pid) {
                m_pid = 0;
                why = "the server stopped at once: " + ReadBytes(m_log);
                return false;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
        why = "the server did not accept connections within 30 s: " + ReadBytes(m_log);
        return false;
    }

    // Asks the server to stop, then kills it if it has not within 15 s.
    void Stop() {
        if (m_pid <= 0) return;
        kill(m_pid, m_stopSignal);
        for (int attempt = 0; attempt < 150; ++attempt) {
            if (waitpid(m_pid, nullptr, WNOHANG) == m_pid) {
                m_pid = 0;
                return;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
        kill(m_pid, SIGKILL);
        waitpid(m_pid, nullptr, 0);
        m_pid = 0;
    }

    // A loopback port no server listens on now.
    static int FreePort() {
        const int fd = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address);
        getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length);
        close(fd);
        return ntohs(address.sin_port);
    }

private:
    pid_t m_pid = 0;
    int m_stopSignal = SIGTERM;
    std::string m_log;
};

// What both throw-away servers share: a scratch directory that the user
// nobody owns when the tests run as root (neither server runs as root), a
// free loopback port, the process, and SQL run through the server's client.
class CScratchServer {
public:
    void Stop() { m_process.Stop(); }
    int Port() const { return m_port; }
    bool LastSqlSucceeded() const { return m_lastStatus == 0; }

protected:
    static bool Root() { return geteuid() == 0; }
    // False with the reason when the directory cannot be given to nobody.
    bool PrepareDir(std::string& why) {
        m_dir = m_scratch.Path();
        m_port = CServerProcess::FreePort();
        if (Root() && chown(m_dir.c_str(), 65534, 65534) != 0) {
            why = "cannot give the scratch directory to the user nobody";
            return false;
        }
        return true;
    }
    // Runs SQL with `client`, a command line that ends with the file to read
    // it from; the client's output.
    std::string RunSql(const std::string& sql, const std::string& client) {
        const std::string file = m_dir + "/query.sql", out = m_dir + "/query.out";
        WriteBytes(file, sql);
        chmod(file.c_str(), 0644);
        m_lastStatus = std::system((client + file + " > " + out + " 2>&1").c_str());
        return ReadBytes(out);
    }

    CScratchDir m_scratch;
    std::string m_dir;
    int m_port = 0;
    CServerProcess m_process;  // stopped before the directory goes

private:
    int m_lastStatus = 0;
};
