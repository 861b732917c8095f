#include "Showroom/Server/MediaServer.h"

#include "Tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace showroom {
namespace {

namespace fs = std::filesystem;

class MediaServerTest : public testing::Test {
protected:
    MediaServerTest()
    {
        write("media/a picture.jpg", "0123456789");
        write("media/inner/b.png", "b");
        write("media/notes.txt", "not for others");
        write("secret.jpg", "secret");
        fs::create_symlink(folder / "secret.jpg", folder / "media/link.jpg");
        server = MediaServer::start((folder / "media").string());
    }

    void write(const std::string& name, const std::string& text)
    {
        fs::create_directories((folder / name).parent_path());
        std::ofstream(folder / name) << text;
    }
    // Sends these bytes and returns all that comes back.
    std::string exchange(const std::string& request)
    {
        const auto address = server->address();
        sockaddr_in place {};
        place.sin_family = AF_INET;
        place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        place.sin_port = htons(std::uint16_t(std::stoi(address.substr(address.rfind(':') + 1))));
        const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
        EXPECT_EQ(::connect(socket, reinterpret_cast<sockaddr*>(&place), sizeof place), 0);
        EXPECT_EQ(::send(socket, request.data(), request.size(), MSG_NOSIGNAL), ssize_t(request.size()));
        std::string answer;
        char bytes[4096];
        for (ssize_t count = 0; (count = ::recv(socket, bytes, sizeof bytes, 0)) > 0;)
            answer.append(bytes, std::size_t(count));
        ::close(socket);
        return answer;
    }
    std::string ask(const std::string& path, const std::string& headers = {}, const std::string& method = "GET")
    {
        return exchange(method + " " + path + " HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\n" + headers + "\r\n");
    }
    static std::string status(const std::string& answer) { return answer.substr(9, 3); }
    static std::string header(const std::string& answer, const std::string& name)
    {
        const auto at = answer.find("\r\n" + name + ": ");
        if (at == std::string::npos)
            return "";
        const auto start = at + name.size() + 4;
        return answer.substr(start, answer.find("\r\n", start) - start);
    }
    static std::string body(const std::string& answer) { return answer.substr(answer.find("\r\n\r\n") + 4); }

    const test::TemporaryFolder files;
    const fs::path folder = files.path();
    std::unique_ptr<MediaServer> server;
};

TEST_F(MediaServerTest, servesPicturesWithTheirTypeAndMarks)
{
    const auto answer = ask("/a%20picture.jpg");
    EXPECT_EQ(status(answer), "200");
    EXPECT_EQ(body(answer), "0123456789");
    EXPECT_EQ(header(answer, "Content-Type"), "image/jpeg");
    EXPECT_EQ(header(answer, "Cache-Control"), "no-cache");
    const auto mark = header(answer, "ETag");
    const auto again = ask("/a%20picture.jpg", "If-None-Match: " + mark + "\r\n");
    EXPECT_EQ(status(again), "304");
    EXPECT_EQ(body(again), "");
    write("media/a picture.jpg", "another picture");
    EXPECT_EQ(body(ask("/a%20picture.jpg", "If-None-Match: " + mark + "\r\n")), "another picture");
    EXPECT_EQ(header(ask("/inner/b.png"), "Content-Type"), "image/png");
}

TEST_F(MediaServerTest, servesPartsAndHeads)
{
    const auto part = ask("/a%20picture.jpg", "Range: bytes=2-4\r\n");
    EXPECT_EQ(status(part), "206");
    EXPECT_EQ(body(part), "234");
    EXPECT_EQ(header(part, "Content-Range"), "bytes 2-4/10");
    const auto head = ask("/a%20picture.jpg", {}, "HEAD");
    EXPECT_EQ(status(head), "200");
    EXPECT_EQ(header(head, "Content-Length"), "10");
    EXPECT_EQ(body(head), "");
}

TEST_F(MediaServerTest, servesNothingElse)
{
    for (const char* path : { "/", "/inner", "/none.jpg", "/notes.txt", "/link.jpg", "/../secret.jpg", "/%2e%2e/secret.jpg",
             "/inner/../../secret.jpg", "/..%2fsecret.jpg", "//etc/hostname", "/a%20picture.jpg/", "/a%20picture.jpg%00.png" })
        EXPECT_NE(status(ask(path)), "200") << path;
    EXPECT_EQ(status(ask((folder / "secret.jpg").string())), "404");
    EXPECT_EQ(status(ask("/a%20picture.jpg", {}, "DELETE")), "405");
    EXPECT_NE(status(exchange("nonsense\r\n\r\n")), "200");
    EXPECT_TRUE(fs::exists(folder / "media/a picture.jpg"));
}

TEST_F(MediaServerTest, severalServeSideBySide)
{
    const auto second = MediaServer::start((folder / "media").string());
    EXPECT_NE(second->address(), server->address());
    EXPECT_EQ(status(ask("/inner/b.png")), "200");
}

} // namespace
} // namespace showroom
