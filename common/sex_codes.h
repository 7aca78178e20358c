#pragma once

// The four sex codes of GB/T 2261.1 and their labels, as cards store and show them. Codes 3 to 8
// are not assigned.

struct SexCode {
    int code;
    const char *label; ///< UTF-8
};

inline constexpr SexCode SEX_CODES[] = {
    {0, "未知"},
    {1, "男"},
    {2, "女"},
    {9, "未说明"},
};

/** The label of `code`, or nullptr when the code is not assigned. */
constexpr const char *sexLabel(int code)
{
    for (const SexCode &row : SEX_CODES) {
        if (row.code == code) {
            return row.label;
        }
    }
    return nullptr;
}
