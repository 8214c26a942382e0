// SocketStream: one accepted connection as httplib reads and writes it, with the limits the
// viewer puts on every request: a request may read at most so many bytes (request line,
// headers and body together, whatever the transfer encoding) and must have arrived whole by
// a deadline. A client that sends one byte every few seconds, or more than any request of the
// API needs, loses its connection instead of holding a worker.
#pragma once

#include <httplib.h>

#include <chrono>
#include <cstddef>
#include <string>

namespace serve {

class SocketStream : public httplib::Stream {
public:
    using Clock = std::chrono::steady_clock;

    // fd stays owned by the caller.
    explicit SocketStream(int fd);

    // Waits up to idle for the first byte of another request; false when none comes or the
    // peer closed the connection.
    bool WaitForRequest(std::chrono::milliseconds idle);
    // Starts a request that may read at most maxBytes, all before deadline.
    void StartRequest(std::size_t maxBytes, Clock::time_point deadline);
    // Whether the current request ran out of bytes or time: the rest of it is unread, so the
    // connection cannot carry another request.
    bool Exhausted() const { return m_exhausted; }

    bool is_readable() const override { return true; }
    bool is_writable() const override { return true; }
    ssize_t read(char* ptr, size_t size) override;
    ssize_t write(const char* ptr, size_t size) override;
    void get_remote_ip_and_port(std::string& ip, int& port) const override;
    void get_local_ip_and_port(std::string& ip, int& port) const override;
    socket_t socket() const override { return m_fd; }

private:
    int m_fd;
    std::size_t m_left = 0;
    Clock::time_point m_deadline{};
    bool m_exhausted = false;
};

}  // namespace serve
