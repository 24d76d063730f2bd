// A web server on this machine that has a few documents.
#pragma once

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <condition_variable>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace television::test {

class WebServer {
public:
    // By their paths. A document that is empty is never sent: who asks for it waits.
    explicit WebServer(std::map<std::string, std::string> documents)
        : m_documents(std::move(documents)), m_socket(socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        auto* any = reinterpret_cast<sockaddr*>(&address);
        socklen_t size = sizeof address;
        if (bind(m_socket, any, size) == 0 && listen(m_socket, 8) == 0) getsockname(m_socket, any, &size);
        m_port = ntohs(address.sin_port);
        m_thread = std::thread([this] { Run(); });
    }
    ~WebServer() {
        shutdown(m_socket, SHUT_RDWR);
        m_thread.join();
        for (const int waiting : m_waiting) close(waiting);
        close(m_socket);
    }
    WebServer(const WebServer&) = delete;
    WebServer& operator=(const WebServer&) = delete;

    std::string Url(const std::string& path) const { return "http://127.0.0.1:" + std::to_string(m_port) + path; }

    void WaitForRequests(int count) {
        std::unique_lock lock(m_mutex);
        m_requested.wait(lock, [&] { return m_requests >= count; });
    }

private:
    void Run() {
        for (int client; (client = accept(m_socket, nullptr, nullptr)) >= 0;)
            if (Answer(client))
                close(client);
            else
                m_waiting.push_back(client);
    }

    bool Answer(int client) {
        std::string request(4096, 0);
        request.resize(static_cast<std::size_t>(std::max<ssize_t>(0, recv(client, request.data(), request.size(), 0))));
        {
            std::lock_guard lock(m_mutex);
            ++m_requests;
        }
        m_requested.notify_all();
        const auto begin = request.find(' ') + 1;
        const auto document = m_documents.find(request.substr(begin, request.find(' ', begin) - begin));
        if (document != m_documents.end() && document->second.empty()) return false;
        const std::string content = document == m_documents.end() ? "none" : document->second;
        const std::string response =
            std::string("HTTP/1.1 ") + (document == m_documents.end() ? "404 Not Found" : "200 OK") +
            "\r\nContent-Type: application/vnd.dvb.streamevent+xml\r\nConnection: close\r\nContent-Length: " +
            std::to_string(content.size()) + "\r\n\r\n" + content;
        send(client, response.data(), response.size(), MSG_NOSIGNAL);
        return true;
    }

    std::map<std::string, std::string> m_documents;
    int m_socket;
    unsigned m_port = 0;
    std::vector<int> m_waiting;
    std::mutex m_mutex;
    std::condition_variable m_requested;
    int m_requests = 0;
    std::thread m_thread;
};

}  // namespace television::test
