#include "apps/viewer/card_export.h"

#include <memory>

#include <QDateTime>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>

#include "apps/card/card_files.h"
#include "apps/card/card_output.h"
#include "apps/card_view/card_sheet.h"
#include "apps/card_view/private_file.h"
#include "apps/viewer/history_csv.h"

namespace viewer
{

namespace
{

app::CardSheet sheetOf(const app::Card &card)
{
    return {card.picture(app::CardSide::FRONT), card.picture(app::CardSide::BACK),
            app::kindForPeople(card), app::missingPhotoNote(card)};
}

/** False when it was not. A file is not: Qt does not see that a full disk has taken less. */
bool paint(const app::CardPointer &card, QPrinter *printer)
{
    return printer->outputFileName().isEmpty() && app::paintSheet(sheetOf(*card), printer);
}

QString covered(const QString &words, const QString &holder)
{
    return holder.isEmpty() ? words : QString(words).replace(holder, app::COVERED_TEXT);
}

} // namespace

CardExport::CardExport(ViewerSettings *settings, QWidget *window)
    : QObject(window), m_settings(settings), m_window(window)
{
}

void CardExport::save(const app::CardPointer &card)
{
    if (!m_settings->folder.isEmpty()) {
        saveIn(m_settings->folder, card);
        return;
    }
    askForFolder([this, card](const QString &folder) {
        if (!saveIn(folder, card))
            return; // and asks once more
        m_settings->folder = folder;
        m_settings->store();
    });
}

void CardExport::saveAs(const app::CardPointer &card)
{
    askForFolder([this, card](const QString &folder) { saveIn(folder, card); });
}

bool CardExport::saveIn(const QString &folder, const app::CardPointer &card)
{
    QString made;
    const QString problem = m_settings->folderNames == FolderNames::HOLDERS
                                ? app::saveInHoldersFolder(*card, folder, &made)
                                : app::saveInNextFolder(*card, folder, &made);
    const QString holder =
        m_settings->folderNames == FolderNames::HOLDERS ? QFileInfo(made).fileName() : QString();
    if (problem.isEmpty())
        report(card, tr("The card was saved in %1.").arg(QDir::toNativeSeparators(made)), {},
               holder);
    else
        reportFailure(card, tr("The card could not be saved."), problem, holder);
    return problem.isEmpty();
}

void CardExport::exportPdf(const app::CardPointer &card)
{
    const QString time = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HHmmss"));
    const QString name = m_isCovered ? tr("card %1").arg(time) : app::holderFileName(*card);
    askForFile(tr("Export as PDF"), name + QLatin1String(".pdf"), tr("PDF files (*.pdf)"),
               [this, card](const QString &path) { writePdf(card, path); });
}

void CardExport::writePdf(const app::CardPointer &card, const QString &path)
{
    const QString holder = QFileInfo(path).fileName();
    QString problem;
    if (app::writeSheetPdf(sheetOf(*card), path, &problem))
        report(card, tr("The card was exported to %1.").arg(path), app::missingPhotoNote(*card),
               holder);
    else
        reportFailure(card, tr("The PDF file could not be written."), problem, holder);
}

void CardExport::exportHistory(const HistoryPane *history)
{
    const QString name = tr("cards %1.csv").arg(QDate::currentDate().toString(Qt::ISODate));
    askForFile(tr("Export the history"), name, tr("Tables (*.csv)"),
               [this, history](const QString &path) {
                   QString problem;
                   if (writePrivateFile(path, historyCsv(history->cards()), &problem))
                       report({}, tr("The history was exported to %1.").arg(path));
                   else
                       reportFailure({}, tr("The table could not be written."), problem);
               });
}

void CardExport::preview(const app::CardPointer &card)
{
    auto *const dialog = new QPrintPreviewDialog(m_window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    const auto isPainted = std::make_shared<bool>(false);
    connect(dialog, &QPrintPreviewDialog::paintRequested, this,
            [card, isPainted](QPrinter *printer) { *isPainted = paint(card, printer); });
    // It was printed from there.
    connect(dialog, &QDialog::accepted, this, [this, dialog, card, isPainted] {
        finishPrint(card, dialog->printer()->outputFileName(), *isPainted);
    });
    dialog->open();
}

void CardExport::print(const app::CardPointer &card)
{
    const auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    auto *const dialog = new QPrintDialog(printer.get(), m_window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, printer, card] {
        finishPrint(card, printer->outputFileName(), paint(card, printer.get()));
    });
    dialog->open();
}

void CardExport::finishPrint(const app::CardPointer &card, const QString &file, bool isPainted)
{
    const QString note = app::missingPhotoNote(*card);
    if (!file.isEmpty())
        writePdf(card, file);
    else if (!isPainted)
        reportFailure(card, tr("The card could not be printed."),
                      tr("See that the printer is ready and that the card has pictures, and print "
                         "once more."));
    else if (note.isEmpty())
        report(card, tr("The card was sent to the printer."));
    else
        report(card, tr("The card was sent to the printer, without its portrait."), note);
}

void CardExport::askForFolder(const std::function<void(const QString &folder)> &use)
{
    auto *const dialog =
        new QFileDialog(m_window, tr("Save in a new folder of"), m_settings->folder);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    connect(dialog, &QFileDialog::fileSelected, this, use);
    dialog->open();
}

void CardExport::askForFile(const QString &title, const QString &proposal, const QString &filter,
                            const std::function<void(const QString &path)> &use)
{
    auto *const dialog = new QFileDialog(m_window, title, m_settings->folder, filter);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(proposal.section(QLatin1Char('.'), -1));
    dialog->selectFile(proposal);
    connect(dialog, &QFileDialog::fileSelected, this, use);
    dialog->open();
}

/** `note`: what the user should look at all the same; empty: nothing. `holder`: the part of the
 * words that names him, perhaps; empty: none does. */
void CardExport::report(const app::CardPointer &card, const QString &done, const QString &note,
                        const QString &holder)
{
    if (note.isEmpty())
        emit ended(card, {StateKind::READ,
                          done,
                          {},
                          {},
                          covered(done, holder),
                          tr("It is the whole card: nothing is covered there.")});
    else
        emit ended(card, {StateKind::ATTENTION, done, note, {}, covered(done, holder)});
}

void CardExport::reportFailure(const app::CardPointer &card, const QString &failed,
                               const QString &problem, const QString &holder)
{
    emit ended(card, {StateKind::FAILED, failed, problem, {}, {}, covered(problem, holder)});
}

} // namespace viewer
