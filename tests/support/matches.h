#pragma once

#include <QString>
#include <QStringList>

/**
 * The first captures of all matches of `pattern` in `text`, in their order; its ^ and $ are those
 * of lines.
 */
QStringList matches(const QString &text, const QString &pattern);
