#pragma once

#include <cstddef>
#include <string>

namespace TkPPDUpdating::Benchmarks {

/// A generated PPD in a temporary file, removed at the end of the scope.
class GeneratedPPDFile {
  public:
    explicit GeneratedPPDFile(std::size_t leastBytes);
    GeneratedPPDFile(const GeneratedPPDFile&) = delete;
    GeneratedPPDFile& operator=(const GeneratedPPDFile&) = delete;
    ~GeneratedPPDFile();

    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

}  // namespace TkPPDUpdating::Benchmarks
