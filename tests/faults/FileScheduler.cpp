// A scheduler's module (backends/modules/TkPPDUpdatingModule.h) whose queues are the files of a
// folder, which --server names: QUEUE.ppd, and QUEUE.json for what its printer answers. It is put
// in the place of the real one, so that commands run as users run them, fast and without a
// scheduler, and a test sees at once what has become of a queue.
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <string_view>
#include <utility>

#include "backends/modules/TkPPDUpdatingModule.h"
#include "sync/QueueScheduler.h"
#include "text/FileDescriptor.h"

namespace TkPPDUpdating::Testing {
namespace {

QueueFailure unreachable() {
    return {&queueSyncCause("no-scheduler"), "the folder of the queues cannot be used"};
}

std::optional<std::string> contentsOf(const std::string& path) {
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    std::string text;
    std::array<char, 4096> part{};
    ssize_t count = file.isOpen() ? 1 : -1;
    while (count > 0) {
        count = ::read(file.get(), part.data(), part.size());
        text.append(part.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return count == 0 ? std::optional(text) : std::nullopt;
}

class FileTalk : public QueueTalk {
  public:
    FileTalk(const std::string& folder, std::string name)
        : place_(folder + "/" + name),
          deviceURI_("file:" + folder + "/" + name + ".json"),
          name_(std::move(name)) {}

    std::optional<SchedulerQueue> queue(QueueFailure& failure) override {
        struct stat status {};
        if (::stat((place_ + ".ppd").c_str(), &status) != 0) {
            failure = unreachable();
            return std::nullopt;
        }
        SchedulerQueue queue;
        queue.name = name_;
        queue.deviceURI = deviceURI_;
        queue.configChangeTime = static_cast<std::int64_t>(status.st_ino);
        return queue;
    }

    SchedulerPPD PPD(QueueFailure& failure) override {
        auto text = contentsOf(place_ + ".ppd");
        if (!text) {
            failure = unreachable();
            return {};
        }
        return {makePPDText(*std::move(text)), false};
    }

    Delivery install(const std::string& text, QueueFailure& failure) override {
        const std::string newFile = place_ + ".new";
        FileDescriptor file(
            ::open(newFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
        if (file.isOpen() && writeAll(file.get(), text) && file.close() &&
            ::rename(newFile.c_str(), (place_ + ".ppd").c_str()) == 0) {
            return Delivery::taken;
        }
        failure = unreachable();
        return Delivery::notTaken;
    }

    bool setStateReasons(const std::vector<std::string>& /*reasons*/,
                         QueueFailure& /*failure*/) override {
        return true;
    }

  private:
    std::string place_;
    std::string deviceURI_;
    std::string name_;
};

class FileScheduler : public QueueScheduler {
  public:
    explicit FileScheduler(std::string folder) : folder_(std::move(folder)) {}

    std::string name() const override { return folder_; }

    std::optional<std::vector<std::string>> queueNames(QueueFailure& failure) const override {
        // No directory_iterator: what it cannot allocate ends the process.
        const std::unique_ptr<DIR, int (*)(DIR*)> folder(::opendir(folder_.c_str()), ::closedir);
        if (!folder) {
            failure = unreachable();
            return std::nullopt;
        }
        std::vector<std::string> names;
        errno = 0;
        while (const dirent* entry = ::readdir(folder.get())) {
            const std::string_view name = entry->d_name;
            if (name.ends_with(".ppd")) {
                names.emplace_back(name.substr(0, name.size() - std::string_view(".ppd").size()));
            }
        }
        if (errno != 0) {
            failure = unreachable();
            return std::nullopt;
        }
        std::ranges::sort(names);
        return names;
    }

    bool talkAbout(const std::string& queueName, const std::function<void(QueueTalk& queue)>& talk,
                   Patience /*patience*/, QueueFailure& /*failure*/) const override {
        FileTalk queue(folder_, queueName);
        talk(queue);
        return true;
    }

  private:
    std::string folder_;
};

}  // namespace
}  // namespace TkPPDUpdating::Testing

const TkPPDUpdating::Module TkPPDUpdatingModule = {
    .makeScheduler = [](const std::string& server, const std::atomic<bool>* /*isCancelled*/,
                        std::unique_ptr<TkPPDUpdating::QueueScheduler>& scheduler) {
        scheduler = std::make_unique<TkPPDUpdating::Testing::FileScheduler>(server);
    }};
