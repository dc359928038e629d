// A throw-away MariaDB server for the tests: a data directory made with
// mariadb-install-db in a scratch directory, the server started on a free
// loopback port with its socket in that directory, and stopped when the
// object goes, or when the test process dies (it is started with a
// parent-death signal). As root, the server drops to the user nobody.
#pragma once

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "ModelFileReader.h"
#include "PostgresServer.h"

class CMariaDbServer {
public:
    ~CMariaDbServer() { Stop(); }

    bool Start(std::string& why) {
        if (std::system("command -v mariadbd > /dev/null && command -v mariadb-install-db > /dev/null") != 0) {
            why = "no MariaDB server programs (Debian mariadb-server)";
            return false;
        }
        m_dir = m_scratch.Path();
        const bool root = geteuid() == 0;
        if (root && chown(m_dir.c_str(), 65534, 65534) != 0) {
            why = "cannot give the scratch directory to the user nobody";
            return false;
        }
        const std::string user = root ? " --user=nobody" : "";
        if (std::system(("mariadb-install-db --no-defaults" + user + " --datadir=" + m_dir +
                         "/data --auth-root-authentication-method=normal --skip-test-db > " + m_dir +
                         "/install.log 2>&1")
                            .c_str()) != 0) {
            why = "mariadb-install-db failed: " + ReadBytes(m_dir + "/install.log");
            return false;
        }
        m_port = CPostgresServer::UnusedPort();
        m_server = fork();
        if (m_server == 0) {
            prctl(PR_SET_PDEATHSIG, SIGTERM);
            std::freopen((m_dir + "/server.log").c_str(), "w", stderr);
            const std::string datadir = "--datadir=" + m_dir + "/data", socket = "--socket=" + m_dir + "/socket",
                              port = "--port=" + std::to_string(m_port), pid = "--pid-file=" + m_dir + "/server.pid";
            std::vector<const char*> args = {"mariadbd", "--no-defaults", datadir.c_str(), socket.c_str(), port.c_str(),
                                             pid.c_str(), "--bind-address=127.0.0.1", "--skip-name-resolve"};
            if (root) args.push_back("--user=nobody");
            args.push_back(nullptr);
            execvp(args[0], const_cast<char* const*>(args.data()));
            _exit(127);
        }
        for (int attempt = 0; attempt < 300; ++attempt) {
            const std::string ping = "mariadb-admin --no-defaults -h 127.0.0.1 -P " + std::to_string(m_port) +
                                     " -u root ping > /dev/null 2>&1";
            if (std::system(ping.c_str()) == 0) return true;
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
        kill(m_server, SIGTERM);
        for (int attempt = 0; attempt < 150; ++attempt) {
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

    // The connection string of the MariaDB ODBC driver for `database`.
    std::string Connection(const std::string& database) const {
        return "Driver=MariaDB Unicode;Server=127.0.0.1;Port=" + std::to_string(m_port) + ";Database=" + database +
               ";UID=root";
    }
    // Runs SQL with the mariadb client; its output, rows as lines and columns split by tabs.
    std::string Sql(const std::string& sql) {
        const std::string file = m_dir + "/query.sql", out = m_dir + "/query.out";
        WriteBytes(file, sql);
        const std::string command = "mariadb --no-defaults -N -B -h 127.0.0.1 -P " + std::to_string(m_port) +
                                    " -u root < " + file + " > " + out + " 2>&1";
        m_lastStatus = std::system(command.c_str());
        return ReadBytes(out);
    }
    bool LastSqlSucceeded() const { return m_lastStatus == 0; }

private:
    CScratchDir m_scratch;
    std::string m_dir;
    int m_port = 0;
    pid_t m_server = 0;
    int m_lastStatus = 0;
};
