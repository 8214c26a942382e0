#include "SocketStream.h"

#include <algorithm>
#include <cerrno>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

namespace serve {

namespace {

// A write that cannot go on for this long (a client that stopped reading) ends the connection.
constexpr std::chrono::seconds kWriteTimeout{30};

// Waits for events on fd until deadline; false on timeout or error.
bool WaitFor(int fd, short events, SocketStream::Clock::time_point deadline)
{
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - SocketStream::Clock::now());
        if (left.count() <= 0) return false;
        pollfd p{fd, events, 0};
        const int n = ::poll(&p, 1, static_cast<int>(std::min<long long>(left.count(), 60000)));
        if (n > 0) return true;
        if (n < 0 && errno != EINTR) return false;
    }
}

void Address(const sockaddr_storage& addr, std::string& ip, int& port)
{
    char text[INET6_ADDRSTRLEN] = "";
    port = 0;
    if (addr.ss_family == AF_INET) {
        const auto* a = reinterpret_cast<const sockaddr_in*>(&addr);
        ::inet_ntop(AF_INET, &a->sin_addr, text, sizeof text);
        port = ntohs(a->sin_port);
    } else if (addr.ss_family == AF_INET6) {
        const auto* a = reinterpret_cast<const sockaddr_in6*>(&addr);
        ::inet_ntop(AF_INET6, &a->sin6_addr, text, sizeof text);
        port = ntohs(a->sin6_port);
    }
    ip = text;
}

}  // namespace

SocketStream::SocketStream(int fd) : m_fd(fd) {}

bool SocketStream::WaitForRequest(std::chrono::milliseconds idle)
{
    if (!WaitFor(m_fd, POLLIN, Clock::now() + idle)) return false;
    char c = 0;
    return ::recv(m_fd, &c, 1, MSG_PEEK) == 1;
}

void SocketStream::StartRequest(std::size_t maxBytes, Clock::time_point deadline)
{
    m_left = maxBytes;
    m_deadline = deadline;
    m_exhausted = false;
}

ssize_t SocketStream::read(char* ptr, size_t size)
{
    if (m_left == 0 || !WaitFor(m_fd, POLLIN, m_deadline)) {
        m_exhausted = true;
        return -1;
    }
    ssize_t n = 0;
    do {
        n = ::recv(m_fd, ptr, std::min(size, m_left), 0);
    } while (n < 0 && errno == EINTR);
    if (n > 0) m_left -= static_cast<size_t>(n);
    return n;
}

ssize_t SocketStream::write(const char* ptr, size_t size)
{
    if (!WaitFor(m_fd, POLLOUT, Clock::now() + kWriteTimeout)) return -1;
    ssize_t n = 0;
    do {
        n = ::send(m_fd, ptr, size, MSG_NOSIGNAL);
    } while (n < 0 && errno == EINTR);
    return n;
}

void SocketStream::get_remote_ip_and_port(std::string& ip, int& port) const
{
    sockaddr_storage addr{};
    socklen_t len = sizeof addr;
    if (::getpeername(m_fd, reinterpret_cast<sockaddr*>(&addr), &len) != 0) addr.ss_family = AF_UNSPEC;
    Address(addr, ip, port);
}

void SocketStream::get_local_ip_and_port(std::string& ip, int& port) const
{
    sockaddr_storage addr{};
    socklen_t len = sizeof addr;
    if (::getsockname(m_fd, reinterpret_cast<sockaddr*>(&addr), &len) != 0) addr.ss_family = AF_UNSPEC;
    Address(addr, ip, port);
}

}  // namespace serve
