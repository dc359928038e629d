// A throw-away MariaDB server for the tests: a data directory made with
// mariadb-install-db in a scratch directory, the server started on a free
// loopback port with its socket in that directory, and stopped when the
// object goes, or when the test process dies (ServerProcess.h). As root,
// the server drops to the user nobody.
#pragma once

#include <signal.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "ModelFileReader.h"
#include "ServerProcess.h"

class CMariaDbServer : public CScratchServer {
public:
    bool Start(std::string& why) {
        if (std::system("command -v mariadbd > /dev/null && command -v mariadb-install-db > /dev/null") != 0) {
            why = "no MariaDB server programs (Debian mariadb-server)";
            return false;
        }
        if (!PrepareDir(why)) return false;
        const std::string user = Root() ? " --user=nobody" : "";
        if (std::system(("mariadb-install-db --no-defaults" + user + " --datadir=" + m_dir +
                         "/data --auth-root-authentication-method=normal --skip-test-db > " + m_dir +
                         "/install.log 2>&1")
                            .c_str()) != 0) {
            why = "mariadb-install-db failed: " + ReadBytes(m_dir + "/install.log");
            return false;
        }
        std::vector<std::string> args = {"mariadbd", "--no-defaults", "--datadir=" + m_dir + "/data",
                                         "--socket=" + m_dir + "/socket", "--port=" + std::to_string(m_port),
                                         "--pid-file=" + m_dir + "/server.pid", "--bind-address=127.0.0.1",
                                         "--skip-name-resolve"};
        if (Root()) args.push_back("--user=nobody");
        m_process.Spawn(args, m_dir + "/server.log", SIGTERM);
        return m_process.WaitReady("mariadb-admin --no-defaults -h 127.0.0.1 -P " + std::to_string(m_port) +
                                       " -u root ping > /dev/null 2>&1",
                                   why);
    }

    // The connection string of the MariaDB ODBC driver for `database`.
    std::string Connection(const std::string& database) const {
        return "Driver=MariaDB Unicode;Server=127.0.0.1;Port=" + std::to_string(m_port) + ";Database=" + database +
               ";UID=root";
    }
    // Runs SQL with the mariadb client; its output, rows as lines and columns split by tabs.
    std::string Sql(const std::string& sql) {
        return RunSql(sql, "mariadb --no-defaults -N -B -h 127.0.0.1 -P " + std::to_string(m_port) + " -u root < ");
    }
};
