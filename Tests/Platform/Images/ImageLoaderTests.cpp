#include "Tests/Platform/Images/ImagesTest.h"
#include "Tests/Support/RawServer.h"

#include <deque>
#include <set>

namespace platform {
namespace {

constexpr ImageTarget small { 60, 60, ImageFit::fill };
constexpr ImageTarget large { 120, 120, ImageFit::fill };

// A loader with short patience and a disk cache of its own, and a server.
class ImageLoading : public ImagesTest {
protected:
    ImageLoading() { restart(); }

    void restart()
    {
        loader = nullptr; // which ends the former one
        loader = std::make_unique<ImageLoader>(settings());
    }
    ImageLoader::Settings settings() const
    {
        ImageLoader::Settings made;
        made.limits = { 1u << 20, 0.4, 1.2, 3 };
        made.diskFolder = folder + "/disk";
        return made;
    }

    URL address(const std::string& path) const { return *URL::parse(server.address(path)); }
    // Answers with a picture, or whatever the body is.
    void serve(const std::string& path, const std::string& content, const std::string& headers = {})
    {
        server.on(path,
            [content, headers](const auto& exchange) { exchange.write(RawServer::response(content, "image/png", headers)); });
    }
    void ask(const URL& wanted, const std::optional<ImageTarget>& target = small)
    {
        requests.push_back(loader->load(wanted, target, [this](const auto& picture) { got.push_back(picture); }));
    }
    // The one picture that comes of asking for it; null when it fails.
    std::shared_ptr<const CGImage> load(const URL& wanted)
    {
        got.clear();
        ask(wanted);
        host.advance(0);
        EXPECT_EQ(got.size(), 1u);
        return got.empty() ? nullptr : got.front();
    }

    const std::string body = text(picture(300, 300));
    RawServer server; // its threads use the body
    std::unique_ptr<ImageLoader> loader;
    std::deque<std::unique_ptr<ImageLoader::Request>> requests;
    std::vector<std::shared_ptr<const CGImage>> got;
};

TEST_F(ImageLoading, loadsOnceForManyAskers)
{
    serve("/a.png", body);
    for (int i = 0; i < 3; ++i)
        ask(address("/a.png"));
    ask(address("/a.png"), large);
    ask(address("/a.png"), std::nullopt);
    host.advance(0);
    ASSERT_EQ(got.size(), 4u) << "one of them has no size yet";
    EXPECT_EQ(std::set(got.begin(), got.end()).size(), 2u) << "a picture for each size";
    EXPECT_EQ(server.requestCount("/a.png"), 1);
    EXPECT_EQ(loader->decodeCount(), 2);
    requests.back()->setTarget({ 30, 30, ImageFit::fill });
    host.advance(0);
    ASSERT_EQ(got.size(), 5u);
    EXPECT_EQ(got[4]->width(), 30);
    EXPECT_EQ(server.requestCount("/a.png"), 1);
    EXPECT_EQ(loader->find(address("/a.png"), large)->width(), 120);
    EXPECT_EQ(loader->findAnySize(address("/a.png"))->width(), 120);
    EXPECT_FALSE(loader->find(address("/b.png"), large));
}

TEST_F(ImageLoading, endsTheRequestWithItsLastAsker)
{
    std::atomic<bool> gone = false;
    server.on("/slow.png", [&](const auto& exchange) {
        exchange.write("HTTP/1.1 200 OK\r\nContent-Type: image/png\r\nContent-Length: 1000000\r\n\r\nabc");
        exchange.waitUntilGone();
        gone = true;
    });
    ask(address("/slow.png"));
    ask(address("/slow.png"));
    EXPECT_TRUE(server.waitFor([&] { return server.requestCount("/slow.png") == 1; }));
    requests.pop_back();
    EXPECT_FALSE(gone);
    requests.pop_back();
    EXPECT_TRUE(server.waitFor([&] { return gone.load(); }));
    host.advance(0);
    EXPECT_TRUE(got.empty());
}

TEST_F(ImageLoading, servesTheNewestWishesFirstAndOnlySoManyAtOnce)
{
    std::atomic<int> underWay = 0, most = 0;
    for (int i = 0; i < 20; ++i) {
        server.on("/" + std::to_string(i), [&](const auto& exchange) {
            const int now = ++underWay;
            for (int seen = most; now > seen && !most.compare_exchange_weak(seen, now);) { }
            exchange.sleep(0.02);
            --underWay;
            exchange.write(RawServer::response(body));
        });
        ask(address("/" + std::to_string(i)));
    }
    host.advance(0);
    EXPECT_EQ(got.size(), 20u);
    EXPECT_LE(most, 6);
    EXPECT_GT(most, 1);
    const auto paths = server.paths();
    ASSERT_EQ(paths.size(), 20u);
    const auto place = [&](const char* path) { return std::find(paths.begin(), paths.end(), path) - paths.begin(); };
    EXPECT_LT(place("/19"), place("/7"));
}

TEST_F(ImageLoading, memoryHasABound)
{
    constexpr ImageTarget huge { 512, 512, ImageFit::fill };
    const auto loadOthers = [&](int first, int end) {
        for (int i = first; i < end; ++i) {
            const auto path = "/" + std::to_string(i);
            serve(path, body);
            requests.clear();
            requests.push_back(loader->load(address(path), huge, [](const auto&) {}));
            host.advance(0);
        }
    };
    serve("/a.png", body);
    got.push_back(load(address("/a.png")));
    loadOthers(0, 40);
    EXPECT_TRUE(loader->find(address("/39"), huge));
    EXPECT_FALSE(loader->find(address("/0"), huge));
    EXPECT_TRUE(loader->find(address("/a.png"), small)) << "as long as somebody shows it";
    got.clear();
    loadOthers(40, 80);
    EXPECT_FALSE(loader->find(address("/a.png"), small));
}

TEST_F(ImageLoading, theDiskServesItAfterARestart)
{
    serve("/kept.png", body, "Cache-Control: max-age=3600\r\n");
    std::atomic<int> unchanged = 0;
    server.on("/asked.png", [&](const auto& exchange) {
        const bool isKnown = exchange.header("If-None-Match") == "\"one\"";
        unchanged += isKnown;
        const std::string headers = "ETag: \"one\"\r\nCache-Control: max-age=0\r\n";
        exchange.write(RawServer::response(isKnown ? "" : body, "image/png", headers, isKnown ? "304 Not Modified" : "200 OK"));
    });
    serve("/never.png", body, "Cache-Control: no-store\r\n");
    for (int start = 0; start < 3; ++start) {
        restart();
        for (const char* path : { "/kept.png", "/asked.png", "/never.png" })
            EXPECT_TRUE(load(address(path))) << path << " at start " << start;
    }
    EXPECT_EQ(server.requestCount("/kept.png"), 1);
    EXPECT_EQ(server.requestCount("/asked.png"), 3);
    EXPECT_EQ(unchanged, 2);
    EXPECT_EQ(server.requestCount("/never.png"), 3);
}

TEST_F(ImageLoading, anAnswerThatBrokeOffOrWasNoPictureIsNotKept)
{
    const std::string lasting = "Cache-Control: max-age=3600\r\n";
    server.on("/cut.png", [&](const auto& exchange) {
        const auto whole = RawServer::response(body, "image/png", lasting);
        exchange.write(whole.substr(0, whole.size() - 100));
    });
    serve("/junk.png", "junk", lasting);
    EXPECT_FALSE(load(address("/cut.png")));
    EXPECT_FALSE(load(address("/junk.png")));
    EXPECT_EQ(takeLines().size(), 2u);
    EXPECT_FALSE(loader->mayLoad(address("/junk.png")));
    serve("/cut.png", body, lasting);
    serve("/junk.png", body, lasting);
    EXPECT_TRUE(load(address("/junk.png"))) << "the disk's answer is not trusted again";
    restart();
    EXPECT_TRUE(load(address("/cut.png")));
    EXPECT_TRUE(load(address("/junk.png")));
    EXPECT_EQ(server.requestCount("/junk.png"), 2);
}

TEST_F(ImageLoading, givesUpOnWhatIsNoPicture)
{
    const auto saying = [](const std::string& bytes) { return [bytes](const auto& exchange) { exchange.write(bytes); }; };
    const auto redirectTo = [&](const std::string& place) {
        return saying(RawServer::response("", "text/plain", "Location: " + place + "\r\n", "302 Found"));
    };
    for (int i = 0; i < 10; ++i)
        server.on("/hop" + std::to_string(i), redirectTo("/hop" + std::to_string(i + 1)));
    write("secret.png", picture(10, 10));
    const std::string head = "HTTP/1.1 200 OK\r\nContent-Type: image/png\r\n", page = "<html>sorry</html>";
    struct Answer {
        const char* why;
        std::function<void(const RawServer::Exchange&)> answer;
        const char* told;
    };
    const Answer answers[] = {
        { "missing", saying(RawServer::response("no", "text/plain", {}, "404 Not Found")), "404 Not Found" },
        { "a page", saying(RawServer::response(page, "text/html; charset=utf-8")), "text/html" },
        { "a page that claims to be a picture", saying(RawServer::response(page)), "neither PNG" },
        { "nothing", saying(RawServer::response("")), "0 bytes" },
        { "breaks off", saying(head + "Content-Length: 4000\r\n\r\n" + body.substr(0, 300)), "" },
        { "breaks off within a chunk", saying(head + "Transfer-Encoding: chunked\r\n\r\nff\r\nabc"), "" },
        { "breaks off unnoticed", saying(head + "Connection: close\r\n\r\n" + body.substr(0, 300)), "breaks off" },
        { "too large by its own word", saying(head + "Content-Length: 1000000000000\r\n\r\nabc"), "more than 1048576 bytes" },
        { "without end",
            [head](const auto& exchange) {
                for (exchange.write(head + "\r\n"); exchange.write(std::string(4096, 'x'));) { }
            },
            "more than 1048576 bytes" },
        { "no answer", [](const auto& exchange) { exchange.waitUntilGone(); }, "no sign of life for 0.4 s" },
        { "stalls",
            [head](const auto& exchange) {
                exchange.write(head + "Content-Length: 4000\r\n\r\nabc");
                exchange.waitUntilGone();
            },
            "no sign of life for 0.4 s" },
        { "a byte now and then",
            [head](const auto& exchange) {
                for (exchange.write(head + "\r\n"); exchange.write("x");)
                    exchange.sleep(0.05);
            },
            "longer than 1.2 s" },
        { "no HTTP", saying(std::string(3000, '\xfe')), "" },
        { "hangs up", [](const auto&) {}, "" },
        { "in circles", redirectTo("/0"), "more than 3 redirections" },
        { "too many hops", redirectTo("/hop0"), "more than 3 redirections" },
        { "to a file", redirectTo(URL::fileURL(folder + "/secret.png").absoluteString()), "" },
        { "to no address", redirectTo("http://"), "" },
    };
    const auto expectNone = [this](const URL& wanted, const std::string& told) {
        EXPECT_FALSE(load(wanted));
        const auto lines = takeLines();
        ASSERT_EQ(lines.size(), 1u) << testing::PrintToString(lines);
        EXPECT_TRUE(lines[0].starts_with("image \"" + wanted.absoluteString() + "\" not shown: ")) << lines[0];
        EXPECT_NE(lines[0].find(told), std::string::npos) << lines[0];
        EXPECT_LT(lines[0].size(), 400u);
    };
    for (const Answer& each : answers) {
        SCOPED_TRACE(each.why);
        restart(); // nothing is known of the address
        server.on("/0", each.answer);
        expectNone(address("/0"), each.told);
    }
    // Nobody listens, no such host, TLS with a server that has none, no host at all (which may not even be an address).
    for (const std::string& other : { std::string("http://127.0.0.1:1/a.png"), std::string("http://no-such-host.invalid/a.png"),
             "https" + server.address("/0").substr(4), std::string("http:///a.png") }) {
        SCOPED_TRACE(other);
        if (const auto wanted = URL::parse(other))
            expectNone(*wanted, "");
    }
}

TEST_F(ImageLoading, endsQuietlyWithRequestsUnderWay)
{
    server.on("/silent.png", [](const auto& exchange) { exchange.waitUntilGone(); });
    for (int i = 0; i < 10; ++i)
        ask(address("/silent.png?" + std::to_string(i)));
    serve("/a.png", body);
    ask(address("/a.png"));
    restart();
    host.advance(0);
    EXPECT_TRUE(got.empty());
    ask(address("/a.png"));
    loader = nullptr; // before the HTTP library is there
    EXPECT_TRUE(MainQueue::shared().waitUntilQuiescent(5)) << "no job is left";
}

} // namespace
} // namespace platform
