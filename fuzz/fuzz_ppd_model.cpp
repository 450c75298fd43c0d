// The parsed PPD model: any text is parsed or refused with a reason, the same from a file and for a
// queue, every name that the model tells can be looked up, and each option stands in the group that
// a walk through the lines finds.
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "backends/ppdmodel/PPDModelCore.h"
#include "backends/ppdmodel/PPDModelFile.h"
#include "core_interface/OrbPPDGroupedOption.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/MemoryFile.h"
#include "ppd/PPDTextFile.h"
#include "ppd/PPDTextIndex.h"

using namespace TkPPDUpdating;
using namespace TkPPDUpdating::Fuzzing;

namespace {

using ParsedPPD = std::shared_ptr<const PPDModelFile>;
using Groups = std::map<std::string_view, std::string_view>;

bool isOneLine(const std::string& reason) {
    return !reason.empty() && reason.find('\n') == std::string::npos;
}

void requireSame(const ParsedPPD& one, const ParsedPPD& other, const char* what) {
    require(!one == !other && (!one || *one->text() == *other->text()), what);
}

/// Whether what is read of a file is its text, and a size that is allowed counts to the byte.
void requireFileOfSize(const PPDText& text, const MemoryFile& file) {
    std::string reason;
    const PPDText whole = PPDTextWithContentsOfFile(file.path(), &reason, text->size());
    require(
        !whole == text.index()->firstInvalidUTF8Byte().has_value() && (!whole || *whole == *text),
        "a text of the largest size is read");
    if (!text->empty()) {
        require(!PPDTextWithContentsOfFile(file.path(), &reason, text->size() - 1) &&
                    reason == "is larger than " + std::to_string(text->size() - 1) + " bytes",
                "one that is larger is not");
    }
}

/// Whether one text is parsed, or refused for the same reason, on every way to it.
void requireSameOnEveryWay(const ParsedPPD& parsed, const PPDText& text,
                           const std::string& reason) {
    const MemoryFile file(*text);
    std::string reasonOfFile;
    requireSame(PPDModelFile::fileWithContentsOfFile(file.path(), &reasonOfFile), parsed,
                "a file is parsed as its text");
    require(reasonOfFile == reason, "or refused for the same reason");
    requireFileOfSize(text, file);
    const PPDModelCore core(
        [&text](const std::string& /*queueName*/, std::string& /*reason*/) { return text; });
    require(!core.PPDFileWithContentsOfFile(file.path()) == !parsed &&
                !core.PPDFileWithContents(text, file.path()) == !parsed &&
                !core.PPDFileForQueueWithName("queue") == !parsed,
            "the core library parses what the model does");
    std::string reasonOfQueue;
    requireSame(core.queuePPDFile("queue", reasonOfQueue), parsed, "so does it for a queue");
    require(reasonOfQueue == (parsed ? "" : "the queue's PPD " + reason), "and says why not");
}

/// The innermost group that is open where each option is opened: first by "OpenUI" and, where it
/// never is, by "JCLOpenUI".
Groups groupsOf(const PPDModelFile& file) {
    Groups byKeyword[2];
    std::vector<std::string_view> open;
    for (const PPDModelAttribute& line : file.attributes()) {
        const std::string_view keyword = line.keyword();
        const std::string_view spec = line.spec();
        if (keyword == "OpenGroup" || keyword == "OpenSubGroup") {
            const std::string_view value = line.value().value_or("");
            open.push_back(value.substr(0, value.find('/')));
        } else if (keyword == "CloseGroup" || keyword == "CloseSubGroup") {
            if (!open.empty()) {
                open.pop_back();
            }
        } else if ((keyword == "OpenUI" || keyword == "JCLOpenUI") && spec.starts_with('*')) {
            byKeyword[keyword == "OpenUI" ? 0 : 1].emplace(
                spec.substr(1), open.empty() ? std::string_view() : open.back());
        }
    }
    byKeyword[0].insert(byKeyword[1].begin(), byKeyword[1].end());
    return byKeyword[0];
}

void requireLookUps(const PPDModelFile& file, std::size_t size) {
    std::size_t valueBytes = 0;
    for (const std::string_view keyword : file.mainKeywords()) {
        const auto attributes = file.attributesForName(keyword);
        require(!attributes.empty(), "a main keyword has an attribute");
        require(OrbPPDFile::firstAttributeForName(&file, keyword) == attributes.front(),
                "and a first one");
        for (const OrbPPDAttribute* attribute : attributes) {
            valueBytes += attribute->value().value_or("").size();
        }
        (void)file.attributesForName_spec(keyword, "Letter");
        (void)file.pageSizeForName(keyword);
    }
    require(valueBytes <= size, "values are parts of the text");
}

void requireOptions(const PPDModelFile& file) {
    const Groups groups = groupsOf(file);
    for (const std::string_view name : file.optionNames()) {
        const OrbPPDOption* option = file.optionForName(name);
        require(option, "an option that is listed can be found");
        require(file.optionForName(name) == option, "and is the same when it is asked for again");
        const auto group = groups.find(name);
        require(group != groups.end() && OrbPPDGroupedOption::groupNameOf(option) == group->second,
                "it stands in the group that is open there");
        (void)option->choiceForName(option->defaultChoiceName().value_or(""));
    }
    require(OrbPPDGroupedOption::groupNameOf(nullptr).empty(), "no option stands in no group");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const PPDText text = makePPDText(std::string(textOfInput(data, size)));
    std::string reason;
    const ParsedPPD file = PPDModelFile::fileWithText(text, &reason);
    require(file ? reason.empty() : isOneLine(reason), "one line of reason");
    requireSameOnEveryWay(file, text, reason);
    require(!PPDModelFile::fileWithText(nullptr, &reason) && isOneLine(reason),
            "no text is no PPD");
    require(!PPDModelFile::fileWithContentsOfFile("/", &reason) && isOneLine(reason) &&
                !PPDModelFile::fileWithContentsOfFile("/dev/null", &reason) && isOneLine(reason),
            "nor is what is no regular file");
    if (file) {
        requireLookUps(*file, size);
        requireOptions(*file);
    }
    return 0;
}
