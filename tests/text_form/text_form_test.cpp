#include "text_form/text_form.h"

#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

#include "model/config_file.h"
#include "model/object_bytes.h"
#include "support/configurations.h"
#include "support/sample_images.h"
#include "text_form/schema_check.h"
#include "text_form/shared_gbk.h"
#include "text_form/syntax.h"

namespace korvane {
namespace {

using text_form::Json;
using Bytes = std::vector<std::uint8_t>;
using Content = std::unique_ptr<Configuration>;

std::string documentation(const char* name) {
    std::ifstream file(std::string(KORVANE_DOCS) + '/' + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Empty, or what is wrong with the text.
std::string readInto(const std::string& text, Configuration& content) {
    const auto problem = text_form::read(text, content);
    return problem ? problem->sentence() : "";
}

Content randomContent(unsigned seed) {
    auto content = std::make_unique<Configuration>();
    content->image = *test::randomImage(seed);
    for (int i = 0; i < 60; ++i)
        content->channels.append(content->image.continuous.frames[0].services[0].components[0]);
    return content;
}

// Bytes of noise, as many as `density` of 256, over a whole file's: counts, texts, unused slots.
Content noisyContent(Content content, unsigned seed, unsigned density) {
    std::mt19937 random(seed);
    Bytes file = config_file::encode(*content);
    for (std::size_t i = 4; i < file.size(); ++i)
        if ((i < 32 || i >= 36) && random() % 256 < density)
            file[i] = static_cast<std::uint8_t>(random());
    int result = -1;
    return config_file::decodeWhole(file, result);
}

std::string textAfterTrip(const Configuration& content) {
    const std::string text = text_form::write(content);
    const auto back = std::make_unique<Configuration>();
    EXPECT_EQ(readInto(text, *back), "");
    EXPECT_TRUE(config_file::encode(*back) == config_file::encode(content));
    return text;
}

TEST(TextForm, BringsEveryByteBack) {
    std::vector<Content> contents;
    contents.push_back(std::make_unique<Configuration>());
    contents.push_back(randomContent(0));
    contents.push_back(noisyContent(std::make_unique<Configuration>(), 0, 1));
    for (unsigned seed = 0; seed < 3; ++seed)
        contents.push_back(noisyContent(test::sampleImages(), seed, 1 + 3 * seed));
    contents.push_back(noisyContent(std::make_unique<Configuration>(), 9, 256));
    for (const Content& content : contents) {
        const std::string text = textAfterTrip(*content);
        EXPECT_LT(text.size(), text_form::text_limits::bytes / 2);
    }
}

// What a panel or a device makes has no unused bytes: the fields say all of it.
TEST(TextForm, HasNoRemainderWithoutOddBytes) {
    EXPECT_THAT(textAfterTrip(*test::sampleImages()), Not(testing::HasSubstr("remainder")));
    EXPECT_FALSE(text_form::toTree(*randomContent(5)).contains("remainder"));
}

// Of a service's two ids that differ the second counts, here as for the panel.
TEST(TextForm, ShowsTheIdThatCounts) {
    const auto content = test::sampleImages();
    content->image.continuous.frames[1].services[0].head.serviceId = 9;
    const Json tree = text_form::toTree(*content);
    EXPECT_EQ(tree["continuousMultiplexTable"]["frames"][1]["services"][0]["serviceId"], 101);
    textAfterTrip(*content);
}

TEST(TextForm, HasTheBytesOfATextThatWouldNotComeBack) {
    using namespace std::string_view_literals;
    for (const auto& [gbk, json] : {std::pair{"A\xD6\xD0"sv, Json("A中")},
                                    {"A\0B"sv, {{"bytes", "410042"}}},
                                    {"\xFF"sv, {{"bytes", "ff"}}},
                                    {"\xD6\xD0\xD6"sv, {{"bytes", "d6d0d6"}}}}) {
        const auto content = test::sampleImages();
        auto& name = content->descriptions.slots[0].name = {};
        std::ranges::copy(gbk, name.begin());
        const Json tree = text_form::toTree(*content);
        EXPECT_EQ(tree["serviceDescriptions"][0]["serviceName"], json);
        EXPECT_FALSE(tree.contains("remainder"));
        textAfterTrip(*content);
    }
}

TEST(TextForm, IsWhatItsDocumentationShows) {
    const std::string document = documentation("text_form.md"),
                      text = text_form::write(*test::sampleImages());
    std::size_t examples = 0;
    for (std::size_t at = 0; (at = document.find("```json\n", at)) != document.npos; ++examples) {
        at += 8;
        std::istringstream example(document.substr(at, document.find("```", at) - at));
        std::size_t place = 0;
        for (std::string line; std::getline(example, line);) {
            if (line.find("...") != line.npos) continue;
            place = text.find(line + '\n', place);
            ASSERT_NE(place, text.npos) << line;
        }
    }
    EXPECT_GE(examples, 1u);
}

TEST(TextForm, FollowsItsSchema) {
    const std::string file = documentation("korvane.schema.json");
    EXPECT_TRUE(file == text_form::textOf(text_form::schema()))
        << "docs/korvane.schema.json is to be what schema() gives";
    test::SchemaCheck check(Json::parse(file));
    std::vector<Content> contents;
    contents.push_back(test::sampleImages());
    contents[0]->image.reserved[1] = 7;
    contents[0]->image.network.name[0] = '\xFF';
    contents[0]->image.continuous.frames[1].head.modulation = 99;
    contents.push_back(randomContent(1));
    contents.push_back(noisyContent(test::sampleImages(), 1, 1));
    for (const Content& content : contents)
        EXPECT_EQ(check.violation(text_form::toTree(*content)), "");
}

// Each edit of a sound text, and what is said to it.
TEST(TextForm, RefusesWhatIsWrongAndChangesNothing) {
    struct Case {
        const char *old, *edited, *sentence;
        bool schemaTakesIt = false;
    };
    const Case cases[] = {
        {"configuration 1\"", "configuration 2\"", "format is not \"korvane configuration 1\""},
        {"\"networkLevel\": 3", "\"networkLevel\": 256",
         "network.networkLevel is not a whole number from 0 to 255"},
        {"\"networkLevel\": 3", "\"networkLevel\": -1",
         "network.networkLevel is not a whole number from 0 to 255"},
        {"\"networkLevel\": 3", "\"networkLevel\": 3.0",
         "network.networkLevel is not a whole number from 0 to 255"},
        {"\"networkLevel\": 3,", "", "network.networkLevel is missing"},
        {"\"networkLevel\": 3,", "\"networkLevel\": 3, \"networkLevel\": 3,",
         "network.networkLevel stands there twice", true},
        {"\"networkLevel\": 3,", "\"networkLevel\": 3, \"b\\u0007d\": {}, ",
         "network.b\\u0007d is no key that is known here"},
        {"\"CHN\"", "\"CHINA\"", "network.countryCode is longer than 4 bytes of GBK"},
        {"\"CHN\"", "\"\\u0000\"",
         "network.countryCode holds a character that is not GBK on every system", true},
        {"\"CHN\"", "\"\xF0\x9F\x98\x80\"",
         "network.countryCode holds a character that is not GBK on every system", true},
        {"\"CHN\"", "7", "network.countryCode is neither a text nor {\"bytes\": hexadecimal}"},
        {"\"CHN\"", "{\"bytes\": \"0\"}",
         "network.countryCode is not hexadecimal, two digits a byte"},
        {"530 MHz", "530.123456 MHz",
         "network.frequencyPoint.centreFrequency is no frequency such as \"474.125 MHz\", of at "
         "most five decimals"},
        {"498 MHz", "42949.67296 MHz",
         "network.otherFrequencyPoints[0].centreFrequency is no frequency such as \"474.125 "
         "MHz\", of at most five decimals",
         true},
        {"\"2M\"", "\"3M\"", "network.otherFrequencyPoints[1].bandwidth is none of \"8M\" \"2M\""},
        {"\"00000001\"", "\"000001\"", "network.word0 is not 4 bytes long"},
        {"\"00000001\"", "\"0000000g\"", "network.word0 is not hexadecimal, two digits a byte"},
        {"\"(240, 240)\"", "\"(240,240)\"",
         "continuousMultiplexTable.frames[0].rsCodeRate is none of \"(240, 240)\" \"(240, 224)\" "
         "\"(240, 192)\" \"(240, 176)\""},
        {"239.1.10.1:5000", "239.1.10.256:5000",
         "continuousMultiplexTable.frames[1].services[0].components[0].receiveAddress is no "
         "address and port such as \"239.1.1.1:5000\"",
         true},
        {"239.1.10.1:5000", "239.1.10.01:5000",
         "continuousMultiplexTable.frames[1].services[0].components[0].receiveAddress is no "
         "address and port such as \"239.1.1.1:5000\"",
         true},
        {"\"esgInternal\": false", "\"esgInternal\": \"no\"",
         "continuousMultiplexTable.frames[0].services[0].esgInternal is not a whole number from 0 "
         "to 255"},
        {"\"alarmSwitches\": \"08\"", "\"alarmSwitches\": \"18\"",
         "outputParameters.alarmSwitches has bits that stand elsewhere", true},
        {"\"alarmOnTod\": true", "\"alarmOnTod\": 1",
         "outputParameters.alarmOnTod is neither true nor false"},
        {"\"192.168.1.102\"", "\"192.168.1.\"",
         "outputParameters.backupAddress is no address such as \"192.168.1.20\""},
        {"\"imageHeader\": {", "\"imageHeader\": [{",
         "line 1199, column 1 has a syntax error while parsing array - unexpected '}'; expected "
         "']'",
         true},
    };
    const auto sample = test::sampleImages(), content = randomContent(3);
    const std::string sound = text_form::write(*sample);
    const Bytes before = config_file::encode(*content);
    test::SchemaCheck check(text_form::schema());
    for (const Case& c : cases) {
        std::string text = sound;
        const std::size_t place = text.find(c.old);
        ASSERT_NE(place, text.npos) << c.old;
        text.replace(place, std::strlen(c.old), c.edited);
        EXPECT_EQ(readInto(text, *content), c.sentence);
        EXPECT_TRUE(c.schemaTakesIt || check.violation(Json::parse(text)) != "") << c.edited;
    }
    EXPECT_TRUE(config_file::encode(*content) == before);
}

TEST(TextForm, HoldsListsToTheirPlaces) {
    const auto content = test::sampleImages();
    Json tree = text_form::toTree(*content);
    Json& networks = tree["network"]["otherNetworks"];
    networks = Json::array_t(17, networks[0]);
    EXPECT_EQ(text_form::fromTree(tree, *content)->sentence(),
              "network.otherNetworks has 17 entries, and at most 16 have a place");
    networks = 3;
    EXPECT_EQ(text_form::fromTree(tree, *content)->sentence(),
              "network.otherNetworks is not a list");
}

// An edit that gives a slot to a new service must not give it what stood in that slot unused.
TEST(TextForm, RefusesARemainderThatTheFieldsContradict) {
    const auto content = test::sampleImages();
    FrameSlot& frame = content->image.continuous.frames[1];
    frame.services[frame.head.serviceCount].bandwidth = 77;
    Json tree = text_form::toTree(*content);
    EXPECT_FALSE(text_form::fromTree(tree, *content));
    Json& services = tree["continuousMultiplexTable"]["frames"][1]["services"];
    services.push_back(services[0]);
    EXPECT_EQ(text_form::fromTree(tree, *content)->sentence(), "remainder contradicts the fields");
    for (const auto& [remainder, sentence] :
         {std::pair{Json(1), "remainder is not a list"},
          {Json::parse(R"([{"offset": 671984, "bytes": "00"}])"),
           "remainder[0] is beyond the end of the configuration"},
          {Json::parse(R"([{"offset": 4294967295, "bytes": "00"}])"),
           "remainder[0] is beyond the end of the configuration"},
          {Json::parse(R"([{"offset": 1}])"), "remainder[0].bytes is missing"}}) {
        tree["remainder"] = remainder;
        EXPECT_EQ(text_form::fromTree(tree, *content)->sentence(), sentence);
    }
}

std::string manyValues() {
    std::string text = "[";
    for (std::size_t i = 0; i < text_form::text_limits::values; ++i) text += "1,";
    return text + "1]";
}

TEST(Syntax, ErrorsHaveTheirLineAndColumn) {
    const std::pair<std::string, const char*> cases[] = {
        {"", "line 1, column 1"},
        {"{\n  \"a\": ]\n}", "line 2, column 8"},
        {"{\n  \"频点\": 1,\n  \"频\"; }", "line 3, column 6"},
        {"{\"a\": \"\xFF\"}", "line 1, column 8"},
        {"[1e999]", "line 1, column 6"},
        {"{} {}", "line 1, column 4"},
        {"{\"a\": {\"b\": [0, {\"c\": 1, \"c\": 2}]}}", "a.b[1].c"},
        {"{\"" + std::string(100, 'x') + "\": 1, \"" + std::string(100, 'x') + "\": 1}",
         "xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx..."},
        {std::string(17, '['), "[0][0][0][0][0][0][0][0][0][0][0][0][0][0][0]"},
        {manyValues(), ""},
        {std::string(text_form::text_limits::bytes + 1, ' '), ""},
    };
    for (const auto& [text, place] : cases) {
        const auto content = std::make_unique<Configuration>();
        const auto problem = text_form::read(text, *content);
        ASSERT_TRUE(problem) << text.substr(0, 80);
        EXPECT_EQ(problem->place, place) << problem->sentence();
    }
}

// Over all characters of two bytes: the same on each system, or texts would differ between them.
TEST(SharedGbk, IsReadAlikeOnEverySystem) {
    std::uint32_t sum = 0, count = 0;
    for (int lead = 0; lead < 256; ++lead) {
        for (int trail = 0; trail < 256; ++trail) {
            const std::string gbk = {static_cast<char>(lead), static_cast<char>(trail)};
            const auto utf8 = text_form::sharedToUtf8(gbk);
            if (!utf8) continue;
            ++count;
            EXPECT_EQ(text_form::utf8ToShared(*utf8), gbk);
            for (const char c : *utf8) sum = sum * 31 + static_cast<unsigned char>(c);
        }
    }
    EXPECT_EQ(count, 37665u);
    EXPECT_EQ(sum, 823567562u);
}

TEST(SharedGbk, LeavesOutWhatIsReadDifferently) {
    for (const char* gbk :
         {"\x80", "\xFF", "a\xD6", "\xD7\xFA", "\x81\x7F", "\xA2\xAB", "\xAA\xA1", "\xFE\x50"})
        EXPECT_FALSE(text_form::isShared(gbk)) << gbk;
    for (const char* utf8 : {"€", "ā", "😀", "\xFF"})
        EXPECT_FALSE(text_form::utf8ToShared(utf8)) << utf8;
}

}  // namespace
}  // namespace korvane
