// A throw-away PostgreSQL server for the tests: a cluster made with initdb in
// a scratch directory, the server started on a free loopback port and
// stopped when the object goes, or when the test process dies (the server
// is told so by the kernel: it is started with a parent-death signal).
// PostgreSQL refuses to run as root: as root, the cluster belongs to the
// unprivileged user `nobody` and the programs run as that user.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "ModelFileReader.h"

class CPostgresServer {
public:
    ~CPostgresServer() { Stop(); }

    // Starts the server; false with the reason when it cannot be started here.
    bool Start(std::string& why) {
        m_bin = FindBin();
        if (m_bin.empty()) {
            why = "no PostgreSQL server programs (Debian postgresql) under /usr/lib/postgresql";
            return false;
        }
        m_dir = m_scratch.Path();
        const bool root = geteuid() == 0;
        if (root && chown(m_dir.c_str(), 65534, 65534) != 0) {
            why = "cannot give the scratch directory to the user nobody";
            return false;
        }
        const std::string data = m_dir + "/data";
        if (std::system((AsServerUser() + m_bin + "/initdb -D " + data + " --auth=trust -U vrn -E UTF8 --no-locale > " +
                         m_dir + "/initdb.log 2>&1")
                            .c_str()) != 0) {
            why = "initdb failed: " + ReadBytes(m_dir + "/initdb.log");
            return false;
        }
        m_port = FreePort();
        m_server = fork();
        if (m_server == 0) {
            prctl(PR_SET_PDEATHSIG, SIGTERM);
            const std::string postgres = m_bin + "/postgres", port = std::to_string(m_port);
            std::freopen((m_dir + "/server.log").c_str(), "w", stderr);
            std::vector<const char*> args;
            if (root) {
                for (const char* arg : {"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups", "--pdeathsig=TERM"})
                    args.push_back(arg);
            }
            for (const char* arg : {postgres.c_str(), "-D", data.c_str(), "-p", port.c_str(), "-k", m_dir.c_str(), "-c",
                                    "listen_addresses=127.0.0.1", "-c", "fsync=off", "-c", "max_connections=20"})
                args.push_back(arg);
            args.push_back(nullptr);
            execvp(args[0], const_cast<char* const*>(args.data()));
            _exit(127);
        }
        for (int attempt = 0; attempt < 300; ++attempt) {
            const std::string ready = m_bin + "/pg_isready -q -h 127.0.0.1 -p " + std::to_string(m_port);
            if (std::system(ready.c_str()) == 0) return true;
            int status = 0;
            if (waitpid(m_server, &status, WNOHANG) == m_server) {
                m_server = 0;
                why = "the server stopped at once: " + ReadBytes(m_dir + "/server.log");
                return false;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
        why = "the server did not accept connections within 30 s: " + ReadBytes(m_dir + "/server.log");
        return false;
    }

    void Stop() {
        if (m_server <= 0) return;
        kill(m_server, SIGINT);  // fast shutdown
        for (int attempt = 0; attempt < 100; ++attempt) {
            if (waitpid(m_server, nullptr, WNOHANG) == m_server) {
                m_server = 0;
                return;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
        kill(m_server, SIGKILL);
        waitpid(m_server, nullptr, 0);
        m_server = 0;
    }

    int Port() const { return m_port; }
    // A loopback port no server listens on, for a connection that is refused.
    static int UnusedPort() { return FreePort(); }
    // The connection string of the psqlODBC driver for the database postgres.
    std::string Connection() const {
        return "Driver=PostgreSQL Unicode;Server=127.0.0.1;Port=" + std::to_string(m_port) + ";Database=postgres;UID=vrn";
    }
    // Runs SQL with psql; its unaligned output (rows as lines, columns split by |).
    std::string Sql(const std::string& sql) {
        const std::string file = m_dir + "/query.sql", out = m_dir + "/query.out";
        WriteBytes(file, sql);
        chmod(file.c_str(), 0644);
        const std::string command = "psql -X -q -At -v ON_ERROR_STOP=1 -h 127.0.0.1 -p " +
                                    std::to_string(m_port) + " -U vrn -d postgres -f " + file + " > " + out + " 2>&1";
        m_lastStatus = std::system(command.c_str());
        return ReadBytes(out);
    }
    bool LastSqlSucceeded() const { return m_lastStatus == 0; }

private:
    static std::string FindBin() {
        std::error_code error;
        for (const auto& entry : std::filesystem::directory_iterator("/usr/lib/postgresql", error)) {
            const std::string bin = entry.path().string() + "/bin";
            if (std::filesystem::exists(bin + "/initdb") && std::filesystem::exists(bin + "/postgres")) return bin;
        }
        return std::string();
    }
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
    static std::string AsServerUser() {
        return geteuid() == 0 ? "setpriv --reuid=65534 --regid=65534 --clear-groups " : "";
    }

    CScratchDir m_scratch;
    std::string m_bin, m_dir;
    int m_port = 0;
    pid_t m_server = 0;
    int m_lastStatus = 0;
};
