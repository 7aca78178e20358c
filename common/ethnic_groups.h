#pragma once

// The ethnic-group codes of GB 3304 and their names, without the suffix 族 that the standard
// carries: cards print the name alone. In ascending order of the codes.

struct EthnicGroup {
    int code;
    const char *name; ///< UTF-8
};

inline constexpr EthnicGroup ETHNIC_GROUPS[] = {
    {1, "汉"},        {2, "蒙古"},
    {3, "回"},        {4, "藏"},
    {5, "维吾尔"},    {6, "苗"},
    {7, "彝"},        {8, "壮"},
    {9, "布依"},      {10, "朝鲜"},
    {11, "满"},       {12, "侗"},
    {13, "瑶"},       {14, "白"},
    {15, "土家"},     {16, "哈尼"},
    {17, "哈萨克"},   {18, "傣"},
    {19, "黎"},       {20, "傈僳"},
    {21, "佤"},       {22, "畲"},
    {23, "高山"},     {24, "拉祜"},
    {25, "水"},       {26, "东乡"},
    {27, "纳西"},     {28, "景颇"},
    {29, "柯尔克孜"}, {30, "土"},
    {31, "达斡尔"},   {32, "仫佬"},
    {33, "羌"},       {34, "布朗"},
    {35, "撒拉"},     {36, "毛南"},
    {37, "仡佬"},     {38, "锡伯"},
    {39, "阿昌"},     {40, "普米"},
    {41, "塔吉克"},   {42, "怒"},
    {43, "乌孜别克"}, {44, "俄罗斯"},
    {45, "鄂温克"},   {46, "德昂"},
    {47, "保安"},     {48, "裕固"},
    {49, "京"},       {50, "塔塔尔"},
    {51, "独龙"},     {52, "鄂伦春"},
    {53, "赫哲"},     {54, "门巴"},
    {55, "珞巴"},     {56, "基诺"},
    {97, "其他"},     {98, "外国血统中国籍人士"},
};

/** The name of `code`, or nullptr when the standard does not assign the code. */
constexpr const char *ethnicGroupName(int code)
{
    for (const EthnicGroup &group : ETHNIC_GROUPS) {
        if (group.code == code) {
            return group.name;
        }
    }
    return nullptr;
}
