#pragma once

#include <memory>
#include <string>
#include <utility>

#include "backends/ppdmodel/PPDModelCore.h"

namespace TkPPDUpdating::Testing {

/// This project's core library with one queue, which has every name.
class CoreWithQueue : public PPDModelCore {
  public:
    explicit CoreWithQueue(std::shared_ptr<const OrbPPDFile> queue) : queue_(std::move(queue)) {}

    std::shared_ptr<const OrbPPDFile> PPDFileForQueueWithName(
        const std::string& /*queueName*/) const override {
        return queue_;
    }

  private:
    std::shared_ptr<const OrbPPDFile> queue_;
};

}  // namespace TkPPDUpdating::Testing
