// A headless Chromium that a test starts, owns and drives through the
// DevTools protocol over a pipe (--remote-debugging-pipe: commands go in on
// descriptor 3, answers and events come out of descriptor 4, each message
// JSON ended by a NUL byte). No port is opened and nothing but Debian's
// chromium is needed. The page sees real input events: typed text, keys,
// mouse clicks; console messages and uncaught exceptions are collected.
#pragma once

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

class CHeadlessBrowser {
public:
    ~CHeadlessBrowser() { Stop(); }

    // Starts Chromium with a window of that size and a new profile in
    // `profile`, and attaches to its page; false with the reason.
    bool Start(int width, int height, const std::string& profile, const std::string& log, std::string& why) {
        signal(SIGPIPE, SIG_IGN);  // a browser that dies is reported, not fatal
        int toBrowser[2], fromBrowser[2];
        if (pipe(toBrowser) != 0 || pipe(fromBrowser) != 0) {
            why = "no pipes";
            return false;
        }
        m_pid = fork();
        if (m_pid == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            // The pipe ends land on 3 and 4 whatever numbers they had.
            const int in = dup(toBrowser[0]), out = dup(fromBrowser[1]);
            dup2(in, 3);
            dup2(out, 4);
            for (int fd = 5; fd < 1024; ++fd) close(fd);
            std::freopen(log.c_str(), "w", stderr);
            std::freopen("/dev/null", "w", stdout);
            const std::string size = "--window-size=" + std::to_string(width) + "," + std::to_string(height);
            const std::string dir = "--user-data-dir=" + profile;
            // The flags that keep a headless Chromium from reaching out to
            // the network or waiting for services a test machine lacks.
            execlp("chromium", "chromium", "--headless", "--no-sandbox", "--disable-gpu", "--disable-quic",
                   "--no-first-run", "--disable-background-networking", "--disable-component-update",
                   "--disable-sync", "--remote-debugging-pipe", size.c_str(), dir.c_str(), "about:blank",
                   static_cast<char*>(nullptr));
            _exit(127);
        }
        close(toBrowser[0]);
        close(fromBrowser[1]);
        m_in = toBrowser[1];
        m_out = fromBrowser[0];
        if (m_pid < 0) {
            why = "cannot fork";
            return false;
        }
        nlohmann::json targets;
        if (!Call("Target.getTargets", {}, targets, why, false)) return false;
        std::string page;
        for (const auto& target : targets["targetInfos"])
            if (target["type"] == "page") page = target["targetId"];
        if (page.empty()) {
            why = "Chromium opened no page";
            return false;
        }
        nlohmann::json attached;
        if (!Call("Target.attachToTarget", {{"targetId", page}, {"flatten", true}}, attached, why, false))
            return false;
        m_session = attached["sessionId"];
        nlohmann::json ignored;
        return Call("Page.enable", {}, ignored, why) && Call("Runtime.enable", {}, ignored, why) &&
               Call("Log.enable", {}, ignored, why) &&
               Call("Emulation.setDeviceMetricsOverride",
                    {{"width", width}, {"height", height}, {"deviceScaleFactor", 1}, {"mobile", false}}, ignored,
                    why);
    }

    // Loads a page and waits for its load event.
    bool Open(const std::string& url, std::string& why) {
        m_events.clear();
        nlohmann::json result;
        if (!Call("Page.navigate", {{"url", url}}, result, why)) return false;
        return WaitForEvent("Page.loadEventFired", why);
    }

    // The value of a JavaScript expression in the page (JSON-able values).
    nlohmann::json Evaluate(const std::string& expression) {
        nlohmann::json result;
        std::string why;
        if (!Call("Runtime.evaluate", {{"expression", expression}, {"returnByValue", true}}, result, why))
            return nlohmann::json{{"error", why}};
        if (result.contains("exceptionDetails")) return nlohmann::json{{"error", result["exceptionDetails"].dump()}};
        return result["result"].value("value", nlohmann::json());
    }

    // Text typed into the focused element, as a keyboard would.
    void Type(const std::string& text) { Input("Input.insertText", {{"text", text}}); }

    // One key pressed and released: "Enter", "Escape".
    void Press(const std::string& key) {
        const int code = key == "Enter" ? 13 : key == "Escape" ? 27 : 0;
        nlohmann::json down{{"type", "keyDown"}, {"key", key}, {"code", key}, {"windowsVirtualKeyCode", code}};
        if (key == "Enter") down["text"] = "\r";
        Input("Input.dispatchKeyEvent", down);
        Input("Input.dispatchKeyEvent",
             {{"type", "keyUp"}, {"key", key}, {"code", key}, {"windowsVirtualKeyCode", code}});
    }

    // A left click at a point of the window.
    void Click(double x, double y) {
        for (const char* type : {"mouseMoved", "mousePressed", "mouseReleased"})
            Input("Input.dispatchMouseEvent",
                 {{"type", type}, {"x", x}, {"y", y}, {"button", "left"}, {"clickCount", 1}});
    }

    // Saves the window as a PNG image at `path` (coreutils' base64 decodes
    // what Chromium sends); false when Chromium gave none.
    bool SaveScreenshot(const std::string& path) {
        nlohmann::json result;
        std::string why;
        if (!Call("Page.captureScreenshot", {{"format", "png"}}, result, why)) return false;
        std::ofstream(path + ".base64") << result.value("data", "");
        const bool saved = std::system(("base64 -d < '" + path + ".base64' > '" + path + "'").c_str()) == 0;
        std::remove((path + ".base64").c_str());
        return saved;
    }

    // Everything the page wrote to its console, and every uncaught exception.
    std::vector<std::string> ConsoleMessages() {
        Evaluate("0");  // lets events already sent arrive
        std::vector<std::string> messages;
        for (const nlohmann::json& event : m_events) {
            const std::string method = event.value("method", "");
            if (method == "Runtime.consoleAPICalled" || method == "Runtime.exceptionThrown" ||
                method == "Log.entryAdded")
                messages.push_back(event.dump());
        }
        return messages;
    }

    void Stop() {
        if (m_pid <= 0) return;
        Send("Browser.close", {}, false);
        for (int attempt = 0; attempt < 50 && waitpid(m_pid, nullptr, WNOHANG) != m_pid; ++attempt)
            usleep(100000);
        if (kill(m_pid, 0) == 0) {
            kill(m_pid, SIGKILL);
            waitpid(m_pid, nullptr, 0);
        }
        m_pid = 0;
        close(m_in);
        close(m_out);
        m_in = m_out = -1;
    }

private:
    // An input event, waited for: Chromium answers once the page has handled
    // it, so what the test reads next sees its effect.
    void Input(const std::string& method, const nlohmann::json& params) {
        nlohmann::json ignored;
        std::string why;
        Call(method, params, ignored, why);
    }

    int Send(const std::string& method, const nlohmann::json& params, bool inSession = true) {
        nlohmann::json message{{"id", ++m_lastId}, {"method", method}, {"params", params}};
        if (inSession && !m_session.empty()) message["sessionId"] = m_session;
        const std::string bytes = message.dump() + '\0';
        for (std::size_t at = 0; at < bytes.size();) {
            const ssize_t n = write(m_in, bytes.data() + at, bytes.size() - at);
            if (n <= 0) break;
            at += static_cast<std::size_t>(n);
        }
        return m_lastId;
    }

    // Sends a command and waits for its answer, keeping the events that come
    // before it. The wait only guards against a browser that hangs; it bounds
    // no speed, so it is generous enough for a heavily loaded machine.
    bool Call(const std::string& method, const nlohmann::json& params, nlohmann::json& result, std::string& why,
              bool inSession = true) {
        const int id = Send(method, params, inSession);
        for (nlohmann::json message; Receive(message, why);) {
            if (message.value("id", 0) != id) {
                if (message.contains("method")) m_events.push_back(message);
                continue;
            }
            if (message.contains("error")) {
                why = method + ": " + message["error"].dump();
                return false;
            }
            result = message["result"];
            return true;
        }
        return false;
    }

    bool WaitForEvent(const std::string& method, std::string& why) {
        for (const nlohmann::json& event : m_events)
            if (event.value("method", "") == method) return true;
        for (nlohmann::json message; Receive(message, why);) {
            if (message.contains("method")) m_events.push_back(message);
            if (message.value("method", "") == method) return true;
        }
        return false;
    }

    bool Receive(nlohmann::json& message, std::string& why) {
        if (m_out < 0) {
            why = "Chromium is not running";
            return false;
        }
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(kPatience);
        for (;;) {
            const std::size_t end = m_buffer.find('\0');
            if (end != std::string::npos) {
                message = nlohmann::json::parse(m_buffer.substr(0, end), nullptr, false);
                m_buffer.erase(0, end + 1);
                return true;
            }
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline -
                                                                                    std::chrono::steady_clock::now());
            pollfd ready{m_out, POLLIN, 0};
            if (left.count() <= 0 || poll(&ready, 1, static_cast<int>(left.count())) <= 0) {
                why = "Chromium did not answer within " + std::to_string(kPatience) + " s";
                return false;
            }
            char chunk[65536];
            const ssize_t n = read(m_out, chunk, sizeof chunk);
            if (n <= 0) {
                why = "Chromium closed its pipe";
                return false;
            }
            m_buffer.append(chunk, static_cast<std::size_t>(n));
        }
    }

    static constexpr int kPatience = 180;  // seconds

    pid_t m_pid = 0;
    int m_in = -1, m_out = -1;
    int m_lastId = 0;
    std::string m_session;
    std::string m_buffer;
    std::vector<nlohmann::json> m_events;
};
