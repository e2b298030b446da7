// The least a server can do per request, as a yardstick for the watcher under the same load on
// the same machine: one thread accepts a connection, reads one packet, sends a recorded whole
// response (blocking until the kernel has taken it) and closes. No parsing, no limits, no
// event loop.
//
//   baseline_server PORT DIR   answers GET /NAME with DIR/NAME.gzip when the request mentions
//                              gzip and DIR/NAME.identity otherwise (both whole responses, head
//                              and body), and closes the connection on anything else

#include <algorithm>
#include <arpa/inet.h>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <netinet/in.h>
#include <string>
#include <sys/socket.h>
#include <unistd.h>

namespace {

std::string readFile(const std::string &path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void sendAll(int descriptor, const std::string &bytes)
{
    for (size_t sent = 0; sent < bytes.size();) {
        const ssize_t written =
            ::send(descriptor, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (written <= 0)
            return;
        sent += size_t(written);
    }
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: baseline_server PORT DIR\n");
        return 2;
    }
    const std::string dir = argv[2];
    std::map<std::string, std::string> answers;
    for (const char *name : {"metrics", "lanternic.json"}) {
        for (const char *encoding : {"identity", "gzip"})
            answers[std::string("/") + name + ' ' + encoding] =
                readFile(dir + '/' + name + '.' + encoding);
    }

    const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
    const int on = 1;
    ::setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(uint16_t(std::atoi(argv[1])));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::bind(listener, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0 ||
        ::listen(listener, 256) != 0) {
        std::perror("baseline_server");
        return 1;
    }
    std::printf("ready\n");
    std::fflush(stdout);

    char buffer[4096];
    for (;;) {
        const int connection = ::accept(listener, nullptr, nullptr);
        if (connection < 0)
            continue;
        const ssize_t received = ::recv(connection, buffer, sizeof buffer, 0);
        const std::string request(buffer, size_t(std::max<ssize_t>(received, 0)));
        const size_t pathStart = request.find(' ');
        const size_t pathEnd = request.find(' ', pathStart + 1);
        if (pathStart != std::string::npos && pathEnd != std::string::npos) {
            const std::string key =
                request.substr(pathStart + 1, pathEnd - pathStart - 1) +
                (request.find("gzip") != std::string::npos ? " gzip" : " identity");
            if (const auto answer = answers.find(key); answer != answers.end())
                sendAll(connection, answer->second);
        }
        ::close(connection);
    }
}
