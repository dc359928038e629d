// A throw-away PostgreSQL server for the tests: a cluster made with initdb in
// a scratch directory, the server started on a free loopback port and
// stopped when the object goes, or when the test process dies
// (ServerProcess.h).
// PostgreSQL refuses to run as root: as root, the cluster belongs to the
// unprivileged user `nobody` and the programs run as that user.
#pragma once

#include <signal.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "ModelFileReader.h"
#include "ServerProcess.h"

class CPostgresServer : public CScratchServer {
public:
    // Starts the server; false with the reason when it cannot be started here.
    bool Start(std::string& why) {
        m_bin = FindBin();
        if (m_bin.empty()) {
            why = "no PostgreSQL server programs (Debian postgresql) under /usr/lib/postgresql";
            return false;
        }
        if (!PrepareDir(why)) return false;
        const std::string data = m_dir + "/data";
        if (std::system((AsServerUser() + m_bin + "/initdb -D " + data + " --auth=trust -U vrn -E UTF8 --no-locale > " +
                         m_dir + "/initdb.log 2>&1")
                            .c_str()) != 0) {
            why = "initdb failed: " + ReadBytes(m_dir + "/initdb.log");
            return false;
        }
        std::vector<std::string> args;
        if (Root()) args = {"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups", "--pdeathsig=TERM"};
        for (const std::string& arg :
             {m_bin + "/postgres", std::string("-D"), data, std::string("-p"), std::to_string(m_port), std::string("-k"),
              m_dir, std::string("-c"), std::string("listen_addresses=127.0.0.1"), std::string("-c"),
              std::string("fsync=off"), std::string("-c"), std::string("max_connections=20")})
            args.push_back(arg);
        m_process.Spawn(args, m_dir + "/server.log", SIGINT);  // SIGINT: a fast shutdown
        return m_process.WaitReady(m_bin + "/pg_isready -q -h 127.0.0.1 -p " + std::to_string(m_port), why);
    }

    // The connection string of the psqlODBC driver for the database postgres.
    std::string Connection() const {
        return "Driver=PostgreSQL Unicode;Server=127.0.0.1;Port=" + std::to_string(m_port) + ";Database=postgres;UID=vrn";
    }
    // Runs SQL with psql; its unaligned output (rows as lines, columns split by |).
    std::string Sql(const std::string& sql) {
        return RunSql(sql, "psql -X -q -At -v ON_ERROR_STOP=1 -h 127.0.0.1 -p " + std::to_string(m_port) +
                               " -U vrn -d postgres -f ");
    }

private:
    static std::string FindBin() {
        std::error_code error;
        for (const auto& entry : std::filesystem::directory_iterator("/usr/lib/postgresql", error)) {
            const std::string bin = entry.path().string() + "/bin";
            if (std::filesystem::exists(bin + "/initdb") && std::filesystem::exists(bin + "/postgres")) return bin;
        }
        return std::string();
    }
    static std::string AsServerUser() {
        return Root() ? "setpriv --reuid=65534 --regid=65534 --clear-groups " : "";
    }

    std::string m_bin;
};
