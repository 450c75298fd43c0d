#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "core_interface/OrbCUPSICCProfileSpecifier.h"
#include "core_interface/OrbCustomMediaType.h"
#include "core_interface/OrbDictionary.h"
#include "core_interface/OrbICCProfile.h"
#include "core_interface/OrbPPDFile.h"
#include "ppd/PPDText.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// The core library as the application supplies it: what stands behind the class operations of
/// `OrbPPDFile`, `OrbCustomMediaType`, `OrbICCProfile` and `OrbCUPSICCProfileSpecifier`, which say
/// what each operation gives.
///
/// Implementers: answer null on failure and raise nothing. The operations may be called from
/// several threads when the application runs several managers.
class TKPPDUPDATING_PUBLIC TkCore {
  public:
    virtual ~TkCore() = default;

    virtual std::shared_ptr<const OrbPPDFile> PPDFileWithContentsOfFile(
        const std::string& path) const = 0;  ///< Behind the operation of `OrbPPDFile`.
    /// Parses the text of the file at `path`, which has just been read, so that it need not be read
    /// again. A library that cannot parse a text reads the file.
    virtual std::shared_ptr<const OrbPPDFile> PPDFileWithContents(const PPDText& /*contents*/,
                                                                  const std::string& path) const {
        return PPDFileWithContentsOfFile(path);
    }
    virtual std::shared_ptr<const OrbPPDFile> PPDFileForQueueWithName(
        const std::string& queueName) const = 0;  ///< Behind the operation of `OrbPPDFile`.
    virtual std::shared_ptr<const OrbCustomMediaType> customMediaTypeWithPPDParameters(
        const OrbDictionary& parameters) const = 0;  ///< Behind that of `OrbCustomMediaType`.
    virtual std::shared_ptr<const OrbICCProfile> profileWithPPDParameters(
        const OrbDictionary& parameters) const = 0;  ///< Behind that of `OrbICCProfile`.
    virtual std::shared_ptr<const OrbCUPSICCProfileSpecifier> specifierVer2WithProfileID(
        std::uint64_t profileID) const = 0;  ///< Behind that of `OrbCUPSICCProfileSpecifier`.
};

}  // namespace TkPPDUpdating
