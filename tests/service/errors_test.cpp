// The names and the texts of the errors.

#include <set>

#include <gmock/gmock.h>

#include <QLocale>

#include "apps/process/translation.h"
#include "apps/results/result_catalogue.h"
#include "apps/results/tool_faults.h"
#include "apps/results/usb_catalogue.h"
#include "apps/service/service_errors.h"

using namespace app;
using testing::EndsWith;

namespace
{

/** The names of everything by which a reading can fail. */
std::set<std::string> results()
{
    std::set<std::string> names;
    for (const auto *const catalogue : {&resultCatalogue(), &usbCatalogue()}) {
        for (const ResultEntry &entry : *catalogue) {
            if (entry.exitStatus != ExitStatus::DONE)
                names.insert(entry.constant);
        }
    }
    for (const ToolFaultEntry &entry : toolFaultCatalogue())
        names.insert(entry.name);
    return names;
}

void expectTexts(const std::string &name, const std::optional<ErrorTexts> &texts,
                 const char *sentenceEnd)
{
    ASSERT_TRUE(texts) << name;
    for (const QString &text : {texts->headline, texts->cause, texts->remedy})
        EXPECT_THAT(text.toStdString(), EndsWith(sentenceEnd)) << name;
}

} // namespace

TEST(ServiceErrors, Results_HaveAllANameAndNoneHasTwo)
{
    std::multiset<std::string> named;
    for (const ErrorRow &row : errorTable())
        named.insert(row.results.begin(), row.results.end());
    const std::set<std::string> all = results();
    EXPECT_EQ(named, std::multiset<std::string>(all.begin(), all.end()));
}

TEST(ServiceErrors, Rows_AreInTheOrderOfTheEnumerationWithNamesOfTheirOwn)
{
    std::set<std::string> names;
    for (std::size_t i = 0; i < errorTable().size(); ++i) {
        EXPECT_EQ(static_cast<std::size_t>(errorTable()[i].error), i);
        names.insert(errorTable()[i].name);
    }
    EXPECT_EQ(names.size(), errorTable().size());
}

TEST(ServiceErrors, NamesOnTheBus_BeginWithTheDomainOfTheService)
{
    EXPECT_EQ(busName(ServiceError::NO_CARD), IDCARD_SERVICE_DOMAIN ".Error.NoCard");
}

TEST(ServiceErrors, ErrorsAndResults_AreExplainedInSentencesOfBothLanguages)
{
    for (const auto &language : {std::make_pair("en", "."), std::make_pair("zh_CN", "。")}) {
        chooseLanguage(QLocale(QLatin1String(language.first)));
        for (const ErrorRow &row : errorTable())
            expectTexts(row.name, textsOf(busName(row.error)), language.second);
        for (const std::string &result : results())
            expectTexts(result, textsOf(QString::fromStdString(result)), language.second);
    }
    chooseLanguage(QLocale::c());
}

TEST(ServiceErrors, OtherNames_AreNotExplained)
{
    for (const char *name : {"", "NoCard", "USB_READER_OK", "org.freedesktop.DBus.Error.NoReply"})
        EXPECT_FALSE(textsOf(QLatin1String(name))) << name;
}
