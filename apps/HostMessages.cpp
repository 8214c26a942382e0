#include "HostMessages.h"

#include "HostLanguage.h"

#include <utility>

namespace {

// Longer phrases first where one contains another.
const std::pair<const char*, const char*> kChinese[] = {
    {"no command given; use one of ", "未给出命令；请使用以下之一："},
    {"unknown command ", "未知的命令 "},
    {"; use one of ", "；请使用以下之一："},
    {"--output: cannot tell the format of ", "--output：无法判断文件格式："},
    {"; use .png, .svg or .pdf", "；请使用 .png、.svg 或 .pdf"},
    {"expected WxH with sides 1..", "应为 宽x高，边长 1.."},
    {", got ", "，得到 "},
    {"no texts in the language ", "没有该语言的文本："},
    {"; use en or zh", "；请使用 en 或 zh"},
    {"the chart could not be drawn at ", "无法按此尺寸绘制焓湿图："},
    {"cannot encode ", "无法编码 "},
    {"cannot write the output: ", "无法写出输出："},
    {"cannot create a file in ", "无法在此目录创建文件："},
    {"cannot open the file: ", "无法打开文件："},
    {"cannot read the file", "无法读取文件"},
    {"it is a directory", "它是一个目录"},
    {"No such file or directory", "没有该文件或目录"},
    {" lies outside the ", " 位于客户区之外："},
    {" client area", ""},
    {"pixel ", "像素 "},
    {"a state needs exactly two of ", "状态点需要恰好给出以下两个参数："},
    {" is out of range ", " 超出范围 "},
    {" is not one of ", " 不是以下之一："},
    {" is given more than once", " 重复给出"},
    {" is not supported; use one of ", " 不受支持；请使用以下之一："},
    {"the pair ", "参数组合 "},
    {"expected a decimal number, got ", "应为十进制数，得到 "},
    {"expected a number, found ", "应为数值，得到 "},
    {"expected a string, found ", "应为字符串，得到 "},
    {"expected an array, found ", "应为数组，得到 "},
    {"expected an integer, found ", "应为整数，得到 "},
    {"expected an object, found ", "应为对象，得到 "},
    {"expected true or false, found ", "应为 true 或 false，得到 "},
    {"expected the name of a state or a state object, found ", "应为状态点名称或状态点对象，得到 "},
    {"malformed JSON: ", "JSON 格式错误："},
    {"unknown key ", "未知的键 "},
    {"the key ", "键 "},
    {"(did you mean ", "（是否想用 "},
    {" must be below ", " 必须小于 "},
    {" is beyond the ", " 超出了 "},
    {" pixels one drawing may have", " 个像素的单幅图像上限"},
    {"the viewer was started without a scene file; export the scene instead",
     "查看器启动时未指定场景文件；请改为导出场景"},
    {"could not be drawn", "无法绘制"},
    {"is required", "是必需的"},
    {"warning: ", "警告："},
};

}  // namespace

std::string HostMessages::In(KyGraphLanguage language, const std::string& message)
{
    if (language != KyGraphLanguage::Chinese) return message;
    std::string out = message;
    for (const auto& [en, zh] : kChinese) {
        const std::string from(en), to(zh);
        for (size_t at = out.find(from); at != std::string::npos; at = out.find(from, at + to.size()))
            out.replace(at, from.size(), to);
    }
    return out;
}

std::string HostMessages::Localize(const std::string& message) { return In(HostLanguage::Messages(), message); }
