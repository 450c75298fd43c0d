#pragma once

#include <string>
#include <thread>
#include <vector>

namespace TkPPDUpdating::Testing {

/// Answers the first request, with one field more, and closes; then takes no connection any more.
class FullListener {
  public:
    FullListener(std::string answer, const std::string& field);
    FullListener(const FullListener&) = delete;
    FullListener& operator=(const FullListener&) = delete;
    ~FullListener();

    int port() const { return port_; }

  private:
    int listener_ = -1;
    int port_ = 0;
    std::vector<int> others_;
    std::jthread server_;
};

}  // namespace TkPPDUpdating::Testing
