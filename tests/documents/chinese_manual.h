#pragma once

// The manual pages in Chinese. They have the macros of man(7), since those of mdoc(7) know the
// headings of a page in English only.

#include <QString>

/** A part of a page with its texts in Chinese, and the macros of mdoc(7), in those of man(7). */
QString inManMacros(const QString &mdoc);

/**
 * Compares the tags of the part `name` of `page` with those of the same part in English, in the
 * macros of mdoc(7): options and their values, commands, variables, faults, exit statuses.
 */
void expectSameTags(const QString &page, const QString &name, const QString &mdoc);
