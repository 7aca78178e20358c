// What a page and the extension ask for.

#include <gmock/gmock.h>

#include "apps/browser_host/request.h"

using namespace app;

namespace
{

const QByteArray GOOD =
    R"({"origin": "https://pms.example", "request":
        {"include": ["photo", "pictures"], "timeout": 10, "language": "zh-CN"}})";

Request with(const char *part, const char *replacement)
{
    EXPECT_TRUE(GOOD.contains(part)) << part;
    return parseRequest(QByteArray(GOOD).replace(part, replacement));
}

TEST(Request, InFull_IsTaken)
{
    const Request request = parseRequest(GOOD);
    EXPECT_EQ(request.problem, "");
    EXPECT_EQ(request.origin, "https://pms.example");
    EXPECT_EQ(request.include, (QStringList{"photo", "pictures"}));
    EXPECT_EQ(request.timeoutSeconds, 10);
    EXPECT_EQ(request.language, "zh-CN");
}

TEST(Request, ForTheTextsAlone_HasNoParts)
{
    const Request request = with(R"(["photo", "pictures"])", "[]");
    EXPECT_EQ(request.problem, "");
    EXPECT_TRUE(request.include.isEmpty());
}

TEST(Request, OtherKeys_AreRefusedByName)
{
    EXPECT_EQ(with("\"timeout\"", "\"wait\": 1, \"timeout\"").problem, "There is no key \"wait\".");
    EXPECT_EQ(with("\"timeout\"", "\"origin\": \"https://a.example\", \"timeout\"").problem,
              "There is no key \"origin\".");
    EXPECT_EQ(with("\"request\"", "\"tool\": \"/bin/sh\", \"request\"").problem,
              "There is no key \"tool\".");
    EXPECT_EQ(with("\"timeout\"", "\"a\\n\\u001b[2J\": 1, \"timeout\"").problem,
              "There is no key \"a\\u000A\\u001B[2J\".");
}

TEST(Request, MissingKeys_AreNamed)
{
    EXPECT_EQ(with("\"timeout\": 10, ", "").problem, "The key \"timeout\" is missing.");
    EXPECT_EQ(with("\"include\": [\"photo\", \"pictures\"], ", "").problem,
              "The key \"include\" is missing.");
    EXPECT_EQ(with(", \"language\": \"zh-CN\"", "").problem, "The key \"language\" is missing.");
    EXPECT_EQ(with("\"origin\": \"https://pms.example\", ", "").problem,
              "The key \"origin\" is missing.");
    EXPECT_EQ(parseRequest(R"({"origin": "https://pms.example"})").problem,
              "The key \"request\" is missing.");
}

TEST(Request, PartsThatNoPageMayHave_AreRefused)
{
    for (const char *parts : {R"(["fingerprints"])", R"(["photo", "fingerprints"])", R"(["all"])",
                              R"(["photo", "photo"])", R"(["photo,fingerprints"])", R"("photo")",
                              "[1]", "[null]", "[[\"photo\"]]", "{}", "null"})
        EXPECT_EQ(with(R"(["photo", "pictures"])", parts).problem,
                  "The key include takes a list of photo and pictures.")
            << parts;
}

TEST(Request, TimeBeyondItsRange_IsRefused)
{
    for (const char *time : {"0", "-1", "121", "1.5", "1e300", "\"10\"", "null", "true", "[10]"})
        EXPECT_EQ(with("10", time).problem,
                  "The key timeout takes a whole number of seconds from 1 to 120.")
            << time;
    EXPECT_EQ(with("10", "1").timeoutSeconds, 1);
    EXPECT_EQ(with("10", "120").timeoutSeconds, 120);
}

TEST(Request, LanguageThatIsNoTag_IsRefused)
{
    const QByteArray tooLong = "\"" + QByteArray(36, 'a') + "\"";
    for (const char *language : {"\"\"", "\"zh_CN\"", "\"zh CN\"", "\"../en\"", "\"\xe4\xb8\xad\"",
                                 "1", "null", tooLong.constData()})
        EXPECT_EQ(with("\"zh-CN\"", language).problem,
                  "The key language takes a language such as en or zh-CN.")
            << language;
}

TEST(Request, OriginThatIsNoText_IsRefused)
{
    for (const char *origin : {"1", "null", "\"\"", "[]"})
        EXPECT_EQ(with("\"https://pms.example\"", origin).problem, "The key origin takes a text.")
            << origin;
}

TEST(Request, OtherThanAnObject_LacksItsKeys)
{
    for (const char *body : {"[]", "", "{\"origin\"", "no JSON"})
        EXPECT_EQ(parseRequest(body).problem, "The key \"origin\" is missing.") << body;
    EXPECT_EQ(parseRequest(R"({"origin": "https://pms.example", "request": []})").problem,
              "The key \"language\" is missing.");
}

} // namespace
