// A server on this machine that takes connections and never answers, and counts them.
#ifndef NORVASK_TESTS_SUPPORT_SILENT_SERVER_H
#define NORVASK_TESTS_SUPPORT_SILENT_SERVER_H

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <string>
#include <vector>

namespace norvask_test {

class CSilentServer {
public:
    CSilentServer() : m_nSocket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        auto* const any = reinterpret_cast<sockaddr*>(&address);
        if (m_nSocket < 0 || bind(m_nSocket, any, length) != 0 || listen(m_nSocket, 128) != 0 ||
            getsockname(m_nSocket, any, &length) != 0 || fcntl(m_nSocket, F_SETFL, O_NONBLOCK) != 0)
            ADD_FAILURE() << "there is no server";
        m_nPort = ntohs(address.sin_port);
    }
    CSilentServer(const CSilentServer&) = delete;
    CSilentServer& operator=(const CSilentServer&) = delete;
    ~CSilentServer() {
        HangUp();
        close(m_nSocket);
    }

    std::string Url(const std::string& path = "a") const {
        return "http://127.0.0.1:" + std::to_string(m_nPort) + "/" + path;
    }

    // How many have connected by now. The system takes them before anybody asks.
    std::size_t Connections() {
        for (int taken = 0; taken >= 0;) {
            taken = accept(m_nSocket, nullptr, nullptr);
            if (taken >= 0) m_Taken.push_back(taken);
        }
        m_nCount += m_Taken.size() - m_nCounted;
        m_nCounted = m_Taken.size();
        return m_nCount;
    }

    // Closes the connections, so that nobody waits any more.
    void HangUp() {
        Connections();
        for (const int taken : m_Taken)
            close(taken);
        m_Taken.clear();
        m_nCounted = 0;
    }

private:
    const int m_nSocket;
    unsigned int m_nPort = 0;
    std::vector<int> m_Taken;
    std::size_t m_nCounted = 0;
    std::size_t m_nCount = 0;
};

}  // namespace norvask_test

#endif
