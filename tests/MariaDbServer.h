// A throw-away MariaDB server for the tests: a data directory made with
// mariadb-install-db in a scratch directory, the server started on a free
// loopback port with its socket in that directory, and stopped when the
// object goes, or when the test process dies (ServerProcess.h). As root,
// the server drops to the user nobody.
#pragma once

#include <signal.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "ModelFileReader.h"
#include "ServerProcess.h"

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
        m_port = CServerProcess::FreePort();
        std::vector<std::string> args = {"mariadbd", "--no-defaults", "--datadir=" + m_dir + "/data",
                                         "--socket=" + m_dir + "/socket", "--port=" + std::to_string(m_port),
                                         "--pid-file=" + m_dir + "/server.pid", "--bind-address=127.0.0.1",
                                         "--skip-name-resolve"};
        if (root) args.push_back("--user=nobody");
        m_server.Spawn(args, m_dir + "/server.log", SIGTERM);
        return m_server.WaitReady("mariadb-admin --no-defaults -h 127.0.0.1 -P " + std::to_string(m_port) +
                                      " -u root ping > /dev/null 2>&1",
                                  why);
    }

    void Stop() { m_server.Stop(); }

    // The connection string of the MariaDB ODBC driver for `database`.
    std::string Connection(const std::string& database) const {
        return "Driver=MariaDB Unicode;Server=127.0.0.1;Port=" + std::to_string(m_port) + ";Database=" + database +
               ";UID=root";
    }
    // Runs SQL with the mariadb client; its output, rows as lines and columns split by tabs.
    std::string Sql(const std::string& sql) {
        const std::string file = m_dir + "/query.sql", out = m_dir + "/query.out";
        WriteBytes(file, sql);
        m_lastStatus = CServerProcess::Run(
            "mariadb --no-defaults -N -B -h 127.0.0.1 -P " + std::to_string(m_port) + " -u root < " + file, out);
        return ReadBytes(out);
    }
    bool LastSqlSucceeded() const { return m_lastStatus == 0; }

private:
    CScratchDir m_scratch;
    std::string m_dir;
    int m_port = 0;
    CServerProcess m_server;
    int m_lastStatus = 0;
};
