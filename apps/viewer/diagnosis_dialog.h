#pragma once

// The report of "idcard-reader doctor" in a window.

#include <memory>

#include <QDialog>
#include <QPlainTextEdit>
#include <QPushButton>

#include "apps/process/tool_run.h"

namespace viewer
{

class DiagnosisDialog : public QDialog
{
    Q_OBJECT

public:
    /** `language` of the report; empty: the user's. */
    explicit DiagnosisDialog(QString language, QWidget *parent = nullptr);

private:
    void diagnose();
    void finish(app::ToolRun::End end, const QByteArray &report);

    QString m_language;
    QPlainTextEdit *m_report;
    QPushButton *m_again;
    std::unique_ptr<app::ToolRun> m_run;
};

} // namespace viewer
