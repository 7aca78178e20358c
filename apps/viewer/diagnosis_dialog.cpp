#include "apps/viewer/diagnosis_dialog.h"

#include <utility>

#include <QClipboard>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QVBoxLayout>

namespace viewer
{

namespace
{

constexpr QSize SIZE(760, 480);
constexpr int LIMIT_MS = 60000;

} // namespace

DiagnosisDialog::DiagnosisDialog(QString language, QWidget *parent)
    : QDialog(parent), m_language(std::move(language)), m_report(new QPlainTextEdit),
      m_again(new QPushButton(tr("&Again")))
{
    setWindowTitle(tr("Diagnosis"));
    setAttribute(Qt::WA_DeleteOnClose);
    resize(SIZE);
    m_report->setObjectName(QStringLiteral("report"));
    m_report->setAccessibleName(tr("What the machine lacks to read cards"));
    m_report->setReadOnly(true);
    m_report->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    auto *const buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    buttons->addButton(m_again, QDialogButtonBox::ActionRole);
    QPushButton *const copy = buttons->addButton(tr("&Copy"), QDialogButtonBox::ActionRole);
    auto *const layout = new QVBoxLayout(this);
    layout->addWidget(m_report);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_again, &QPushButton::clicked, this, &DiagnosisDialog::diagnose);
    connect(copy, &QPushButton::clicked, this,
            [this] { QGuiApplication::clipboard()->setText(m_report->toPlainText()); });
    diagnose();
}

void DiagnosisDialog::diagnose()
{
    m_again->setEnabled(false);
    m_report->setPlainText(tr("Looking at the machine…"));
    m_run = std::make_unique<app::ToolRun>(
        nullptr, [this](app::ToolRun::End end, const QByteArray &report) { finish(end, report); });
    m_run->setLanguage(m_language);
    m_run->run({QStringLiteral("doctor")}, LIMIT_MS);
}

void DiagnosisDialog::finish(app::ToolRun::End end, const QByteArray &report)
{
    const bool isWhole = end == app::ToolRun::End::DONE && !report.isEmpty();
    m_report->setPlainText(isWhole ? QString::fromUtf8(report)
                                   : tr("The diagnosis failed: %1").arg(m_run->howItEnded()));
    m_again->setEnabled(true);
    m_run.release()->deleteLater();
}

} // namespace viewer
