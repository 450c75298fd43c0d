#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core_interface/OrbPPDAttribute.h"
#include "core_interface/OrbPPDOption.h"
#include "core_interface/OrbPPDPageSize.h"
#include "ppd/PPDText.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// A read-only model of one PPD file: its options with their choices, its page sizes, and its
/// attributes.
///
/// Callers: keywords are given without the asterisk ("MediaType") and compared exactly. What the
/// look-ups hand out is owned by the model and valid as long as it is; absence is null or an empty
/// vector. Nothing is raised.
///
/// Implementers: a look-up must not scan the file; hundreds are made of one model. Answers never
/// change during the life of the model, so that several threads may read one model.
class TKPPDUPDATING_PUBLIC OrbPPDFile {
  public:
    virtual ~OrbPPDFile() = default;

    /// Parses the file at `path` with the core library that the application has set
    /// (`OrbCoreInterface::setCore`). Null when the file cannot be read or parsed, or no library is
    /// set.
    static std::shared_ptr<const OrbPPDFile> PPDFileWithContentsOfFile(const std::string& path);

    /// The same for a file that has been read: `contents` is its text. It is parsed where the core
    /// library can parse texts; else the library reads the file again.
    static std::shared_ptr<const OrbPPDFile> PPDFileWithContents(const PPDText& contents,
                                                                 const std::string& path);

    /// The parsed PPD that is installed for the CUPS print queue of that name; null when there is
    /// none. Finding it is the core library's work.
    static std::shared_ptr<const OrbPPDFile> PPDFileForQueueWithName(const std::string& queueName);

    /// The option with that keyword, or null.
    virtual const OrbPPDOption* optionForName(std::string_view optionName) const = 0;

    /// The attributes with that main keyword, in file order, whatever their option keyword.
    virtual std::vector<const OrbPPDAttribute*> attributesForName(std::string_view name) const = 0;

    /// The first of them, or null; null also for no model.
    static const OrbPPDAttribute* firstAttributeForName(const OrbPPDFile* PPDFile,
                                                        std::string_view name);

    /// The attributes with that main keyword and that option keyword, in file order.
    virtual std::vector<const OrbPPDAttribute*> attributesForName_spec(
        std::string_view name, std::string_view spec) const = 0;

    /// The page size of that name (for example "Letter"), or null.
    virtual const OrbPPDPageSize* pageSizeForName(std::string_view name) const = 0;
};

}  // namespace TkPPDUpdating
