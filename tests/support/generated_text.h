#pragma once

// Parts of the pages that are made from tables of the code.

#include <QString>

/**
 * Compares the part `name` of the page `path`, counted from the top of the tree, with `text`, which
 * ends with a line feed. The part is between two comments of the page, "NAME: made by
 * scripts/make/documents" and "end of NAME". With IDCARD_WRITE_DOCUMENTS set, writes it instead.
 */
void expectGeneratedPart(const QString &path, const QString &name, const QString &text);

/** That part of the page as it stands there; empty, and a failure, when there is none. */
QString partOfPage(const QString &path, const QString &name);
