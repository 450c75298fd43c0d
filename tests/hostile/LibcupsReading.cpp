#include "tests/hostile/LibcupsReading.h"

#include <cups/ppd.h>
#include <sys/mman.h>
#include <unistd.h>

#include <memory>
#include <utility>

// The PPD functions are deprecated in libcups 2 and gone in 3; they are what is asked about here.
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

// What sanitizers are told, where there are any. libcups 2.4 keeps a few bytes of some PPDs that it
// refuses to open; and of a constraint with one word it gives what was in the memory before, which
// has to be the same for each of two readings that are compared.
extern "C" {
const char* __lsan_default_suppressions();  // NOLINT(bugprone-reserved-identifier)
const char* __asan_default_options();       // NOLINT(bugprone-reserved-identifier)

const char* __lsan_default_suppressions() {  // NOLINT(bugprone-reserved-identifier)
    return "leak:_ppdOpen\n";
}

const char* __asan_default_options() {  // NOLINT(bugprone-reserved-identifier)
    return "malloc_fill_byte=0:max_malloc_fill_size=100000";
}
}

namespace TkPPDUpdating::Testing {

namespace {

struct Close {
    void operator()(ppd_file_t* file) const { ::ppdClose(file); }
};

std::string textOf(const char* text) {
    return text ? text : "";
}

/// The file as libcups opens it; null when it does not.
std::unique_ptr<ppd_file_t, Close> opened(std::string_view text) {
    const int file = ::memfd_create("ppd", MFD_CLOEXEC);
    std::size_t written = 0;
    while (file >= 0 && written < text.size()) {
        const ssize_t count = ::write(file, text.data() + written, text.size() - written);
        if (count <= 0) {
            break;
        }
        written += static_cast<std::size_t>(count);
    }
    if (file < 0 || written < text.size() || ::lseek(file, 0, SEEK_SET) != 0) {
        return nullptr;
    }
    // It takes the descriptor.
    return std::unique_ptr<ppd_file_t, Close>(::ppdOpenFd(file));
}

class Reading {
  public:
    explicit Reading(const ppd_file_t& file) : file_(file) {}

    std::vector<LibcupsFact> facts() {
        for (int i = 0; i < file_.num_groups; ++i) {
            addGroup(file_.groups[i], "");
        }
        addAttributes();
        addConstraints();
        addSizes();
        for (int i = 0; i < file_.num_filters; ++i) {
            add("filter", textOf(file_.filters[i]));
        }
        for (int i = 0; i < file_.num_fonts; ++i) {
            add("font", textOf(file_.fonts[i]));
        }
        addPrograms();
        return std::move(facts_);
    }

  private:
    void add(std::string kind, std::string keyword, std::string optionKeyword = {},
             std::string text = {}, std::string value = {}) {
        facts_.push_back({std::move(kind), std::move(keyword), std::move(optionKeyword),
                          std::move(text), std::move(value)});
    }

    void addGroup(const ppd_group_t& group, const std::string& outer) {
        const std::string name = outer + "/" + textOf(group.name);
        add("group", name, "", textOf(group.text));
        for (int i = 0; i < group.num_options; ++i) {
            addOption(group.options[i], name);
        }
        for (int i = 0; i < group.num_subgroups; ++i) {
            addGroup(group.subgroups[i], name);
        }
    }

    void addOption(const ppd_option_t& option, const std::string& group) {
        const std::string keyword = option.keyword;
        add("option", keyword, group, option.text,
            std::to_string(option.ui) + " " + std::to_string(option.section) + " " +
                std::to_string(option.order));
        add("default", keyword, option.defchoice);
        for (int i = 0; i < option.num_choices; ++i) {
            const ppd_choice_t& choice = option.choices[i];
            add("choice", keyword, choice.choice, choice.text, textOf(choice.code));
        }
    }

    void addAttributes() {
        for (int i = 0; i < file_.num_attrs; ++i) {
            const ppd_attr_t& attribute = *file_.attrs[i];
            add("attribute", attribute.name, attribute.spec, attribute.text,
                textOf(attribute.value));
        }
    }

    void addConstraints() {
        for (int i = 0; i < file_.num_consts; ++i) {
            const ppd_const_t& constraint = file_.consts[i];
            add("constraint", constraint.option1, constraint.choice1, constraint.option2,
                constraint.choice2);
        }
    }

    void addSizes() {
        for (int i = 0; i < file_.num_sizes; ++i) {
            const ppd_size_t& size = file_.sizes[i];
            std::string numbers;
            for (const float number :
                 {size.width, size.length, size.left, size.bottom, size.right, size.top}) {
                numbers += std::to_string(number) + " ";
            }
            add("size", size.name, "", "", numbers);
        }
    }

    void addPrograms() {
        add("code", "patches", "", "", textOf(file_.patches));
        add("code", "jcl_begin", "", "", textOf(file_.jcl_begin));
        add("code", "jcl_ps", "", "", textOf(file_.jcl_ps));
        add("code", "jcl_end", "", "", textOf(file_.jcl_end));
        add("name", "modelname", "", "", textOf(file_.modelname));
        add("name", "nickname", "", "", textOf(file_.nickname));
        add("name", "manufacturer", "", "", textOf(file_.manufacturer));
        add("name", "protocols", "", "", textOf(file_.protocols));
    }

    const ppd_file_t& file_;
    std::vector<LibcupsFact> facts_;
};

}  // namespace

std::string LibcupsFact::shown() const {
    return kind + " " + keyword + " " + optionKeyword + "/" + text + ": " + value;
}

std::optional<std::vector<LibcupsFact>> libcupsReading(std::string_view text, std::string& error) {
    const auto file = opened(text);
    if (!file) {
        int line = 0;
        const ppd_status_t status = ::ppdLastError(&line);
        error = std::string(::ppdErrorString(status)) + " on line " + std::to_string(line);
        return std::nullopt;
    }
    return Reading(*file).facts();
}

}  // namespace TkPPDUpdating::Testing
