#include "Platform/Foundation/JSON.h"

#include "Platform/Foundation/JSONCoding.h"

#include <gtest/gtest.h>
#include <limits>

namespace platform {

namespace {

// A record of two texts, as the saved calendar entries are.
struct SavedEvent {
    std::string identifier;
    std::string broadcastId;

    static constexpr auto codingKeys()
    {
        return std::tuple { codingKey("identifier", &SavedEvent::identifier),
            codingKey("broadcastId", &SavedEvent::broadcastId) };
    }
};

class Everything {
public:
    std::optional<std::string> title;
    std::vector<SavedEvent> events;
    std::map<std::string, double> prices;
    std::shared_ptr<SavedEvent> shared;
    std::int8_t tiny = 0;
    std::uint64_t large = 0;
    bool flag = false;

    static constexpr auto codingKeys()
    {
        return std::tuple { codingKey("title", &Everything::title), codingKey("events", &Everything::events),
            codingKey("prices", &Everything::prices), codingKey("shared", &Everything::shared),
            codingKey("tiny", &Everything::tiny), codingKey("large", &Everything::large), codingKey("flag", &Everything::flag) };
    }
};

std::string reprinted(std::string_view text)
{
    const auto value = JSONValue::parse(text);
    return value ? value->print() : "(none)";
}

} // namespace

TEST(JSON, keepsOrderTypesAndEveryDigit)
{
    const char* text = R"({"z":1,"a":[true,null,"\"\\\n\u0001é😀"],"n":-9007199254740993,"d":0.1,"e":{}})";
    EXPECT_EQ(reprinted(text), "{\"z\":1,\"a\":[true,null,\"\\\"\\\\\\n\\u0001é😀\"],\"n\":-9007199254740993,\"d\":0.1,\"e\":{}}");
    const auto value = *JSONValue::parse(text);
    EXPECT_EQ(value["a"][0].boolean(), true);
    EXPECT_EQ(value["n"].integer(), -9007199254740993);
    EXPECT_EQ(value["z"].number(), 1.0);
    EXPECT_EQ(value["d"].integer(), std::nullopt);
    EXPECT_TRUE(value["no"]["such"][7]["path"].isNull());
    EXPECT_TRUE(value["a"][-1].isNull());
    EXPECT_EQ(value["a"].text(), std::nullopt);
}

TEST(JSON, printsForReaders)
{
    const JSONValue value = JSONObject { { "frame", JSONArray { 0, 59.0, 0.5 } }, { "none", JSONObject() }, { "count", 3u } };
    EXPECT_EQ(value.print(JSONStyle::indented),
        "{\n  \"frame\": [\n    0,\n    59,\n    0.5\n  ],\n  \"none\": {},\n  \"count\": 3\n}");
    EXPECT_EQ(JSONValue(std::numeric_limits<double>::infinity()).print(), "null");
    EXPECT_EQ(JSONValue("\xff").print(), "\"\xef\xbf\xbd\"");
}

TEST(JSON, refusesWhatIsNotOneDocument)
{
    for (const char* text : { "", " ", "{", "[1,]", "{\"a\":1,}", "{a:1}", "'a'", "\"a", "nul", "01", "+1", "1 2", "[1]]",
             "\"\n\"", "\"\\ud800\"", "\"\\x\"", "NaN", "1e999", "// comment\n1", "{\"a\" 1}", "[\"a\"\x01]" }) {
        SCOPED_TRACE(text);
        std::string problem;
        EXPECT_EQ(JSONValue::parse(text, &problem), std::nullopt);
        EXPECT_FALSE(problem.empty());
    }
    EXPECT_EQ(JSONValue::parse(std::string_view("1\0", 2)), std::nullopt);
    std::string problem;
    JSONValue::parse("{\n  \"a\": nope\n}", &problem);
    EXPECT_NE(problem.find("line 2"), std::string::npos) << problem;
}

TEST(JSON, boundsDepth)
{
    const auto nested = [](int depth) { return std::string(depth, '[') + std::string(depth, ']'); };
    EXPECT_NE(JSONValue::parse(nested(JSONValue::maximumDepth)), std::nullopt);
    EXPECT_EQ(JSONValue::parse(nested(JSONValue::maximumDepth + 1)), std::nullopt);
    EXPECT_EQ(JSONValue::parse(std::string(5'000'000, '[')), std::nullopt);
    std::string objects;
    for (int i = 0; i < 100'000; ++i)
        objects += "{\"a\":";
    EXPECT_EQ(JSONValue::parse(objects), std::nullopt);
}

TEST(JSON, boundsSize) { EXPECT_EQ(JSONValue::parse('"' + std::string(JSONValue::maximumBytes, 'a') + '"'), std::nullopt); }

TEST(JSON, ofRepeatedKeysTheLastWinsInTheFirstOnesPlace)
{
    EXPECT_EQ(reprinted(R"({"a":1,"b":2,"a":3,"a":{"a":4,"a":5}})"), R"({"a":{"a":5},"b":2})");
    std::string many = "{";
    for (int i = 0; i < 200'000; ++i)
        many += "\"key" + std::to_string(i % 150'000) + "\":1,";
    many.back() = '}';
    const auto value = JSONValue::parse(many); // would take minutes if it compared every pair
    ASSERT_TRUE(value);
    EXPECT_EQ(value->object()->size(), 150'000u);
}

TEST(JSON, invalidUTF8ReadsAsReplacementCharacters)
{
    EXPECT_EQ(reprinted("[\"a\xff\xc3\"]"), "[\"a\xef\xbf\xbd\xef\xbf\xbd\"]");
}

TEST(JSONCoding, aRecordIsExactlyItsMembers)
{
    const auto data = JSONEncoder().encode(SavedEvent { "event-7", "broadcast \"9\"" });
    ASSERT_TRUE(data);
    EXPECT_EQ(textView(*data), R"({"identifier":"event-7","broadcastId":"broadcast \"9\""})");
    const auto event = JSONDecoder().decode<SavedEvent>(*data);
    ASSERT_TRUE(event);
    EXPECT_EQ(event->identifier, "event-7");
    EXPECT_EQ(event->broadcastId, "broadcast \"9\"");
}

TEST(JSONCoding, whatDoesNotHaveTheFormDoesNotDecode)
{
    const JSONDecoder decoder;
    EXPECT_FALSE(decoder.decode<SavedEvent>(R"({"identifier":"a"})"));
    EXPECT_FALSE(decoder.decode<SavedEvent>(R"({"identifier":"a","broadcastId":7})"));
    EXPECT_FALSE(decoder.decode<SavedEvent>(R"({"identifier":"a","broadcastId":null})"));
    EXPECT_FALSE(decoder.decode<SavedEvent>(R"(["a","b"])"));
    EXPECT_FALSE(decoder.decode<SavedEvent>("\"{}\""));
    EXPECT_FALSE(decoder.decode<SavedEvent>(Data {}));
    EXPECT_TRUE(decoder.decode<SavedEvent>(R"({"extra":1,"broadcastId":"b","identifier":"a"})"));
    EXPECT_FALSE(decoder.decode<std::vector<int>>("[1,2,\"3\"]"));
    EXPECT_FALSE(decoder.decode<std::vector<int>>("[1,2.5]"));
    EXPECT_FALSE(decoder.decode<std::int8_t>("128"));
    EXPECT_FALSE(decoder.decode<std::uint64_t>("-1"));
    EXPECT_FALSE(decoder.decode<bool>("1"));
}

TEST(JSONCoding, nestedValuesComeBack)
{
    Everything value;
    value.events = { { "1", "2" }, { "3", "4" } };
    value.prices = { { "USD", 12.5 }, { "JPY", 1200 } };
    value.shared = std::make_shared<SavedEvent>(SavedEvent { "5", "6" });
    value.tiny = -128;
    value.large = 1ull << 62;
    value.flag = true;
    const auto data = JSONEncoder().encode(value);
    ASSERT_TRUE(data);
    EXPECT_EQ(textView(*data).find("title"), std::string_view::npos) << "what is absent is left out";
    const auto again = JSONDecoder().decode<Everything>(*data);
    ASSERT_TRUE(again);
    EXPECT_EQ(again->title, std::nullopt);
    EXPECT_EQ(again->events.at(1).broadcastId, "4");
    EXPECT_EQ(again->prices, value.prices);
    EXPECT_EQ(again->shared->identifier, "5");
    EXPECT_EQ(again->tiny, -128);
    EXPECT_EQ(again->large, 1ull << 62);
    EXPECT_TRUE(again->flag);
}

TEST(JSONCoding, whatHasNoJSONFormIsNotEncoded)
{
    EXPECT_FALSE(JSONEncoder().encode(std::vector<double> { 1, std::numeric_limits<double>::quiet_NaN() }));
    EXPECT_FALSE(JSONEncoder().encode(std::numeric_limits<std::uint64_t>::max()));
}

TEST(Data, base64ComesBackAndRefusesWhatNoEncoderWrites)
{
    Data data;
    for (int length = 0; length < 300; ++length) {
        EXPECT_EQ(dataFromBase64(base64(data)), data) << length;
        data.push_back(static_cast<std::uint8_t>(length * 37));
    }
    EXPECT_EQ(base64(dataFromText("any carnal pleas")), "YW55IGNhcm5hbCBwbGVhcw==");
    for (const char* text :
        { "A", "AA", "AAA", "=AAA", "A=AA", "AA=A", "====", "A===", "AB==", "AAB=", "AA\nA", "AA-_", "AAAA=" })
        EXPECT_EQ(dataFromBase64(text), std::nullopt) << text;
}

} // namespace platform
