// The command "cards".

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "apps/process/json_object.h"
#include "apps/process/translation.h"
#include "apps/terminal/text_layout.h"
#include "apps/tool/commands.h"
#include "apps/tool/failure_report.h"
#include "simulator/card/card_library.h"

namespace app
{

IDCARD_TEXTS(Tool)

ExitStatus runCards(const Options &options, Output *output)
{
    QVector<QStringList> rows{{tr("NAME"), tr("KIND"), tr("TITLE")}};
    QJsonArray cards;
    for (const QString &name : simulator::builtInCardNames()) {
        simulator::DescriptionError error;
        const auto card = simulator::loadCard(name, &error);
        if (!card) {
            const QString words = tr(
                "The built-in card %1 cannot be used; this program is broken. Install it again.");
            return report(toolFailure(ToolFault::PROGRAM_BROKEN, words.arg(name)), options, output);
        }
        const QString kind = simulator::cardKindName(card->kind);
        rows << QStringList{name, kind, card->title};
        cards << JsonObject{{"name", name}, {"kind", kind}, {"title", card->title}};
    }
    output->write(options.json ? QJsonDocument(cards).toJson() : alignedTable(rows).toUtf8());
    return ExitStatus::DONE;
}

} // namespace app
