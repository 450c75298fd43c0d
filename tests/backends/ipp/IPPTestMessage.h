#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "backends/ipp/IPPStatusMapping.h"
#include "backends/libcups/IPPMessage.h"

namespace TkPPDUpdating::Testing {

/// Builds the answer of a printer as libcups holds it.
class IPPTestMessage {
  public:
    IPPTestMessage() : message_(ippNew()) {}

    ipp_t* get() const { return message_.get(); }

    IPPTestMessage& texts(const char* name, ipp_tag_t syntax, std::vector<const char*> values) {
        ippAddStrings(get(), IPP_TAG_PRINTER, syntax, name, static_cast<int>(values.size()),
                      nullptr, values.data());
        return *this;
    }
    IPPTestMessage& keywords(const char* name, std::vector<const char*> values) {
        return texts(name, IPP_TAG_KEYWORD, std::move(values));
    }
    IPPTestMessage& octets(const char* name, const std::vector<std::string>& values) {
        ipp_attribute_t* attribute = nullptr;
        for (const std::string& value : values) {
            if (attribute) {
                ippSetOctetString(get(), &attribute, ippGetCount(attribute), value.data(),
                                  static_cast<int>(value.size()));
            } else {
                attribute = ippAddOctetString(get(), IPP_TAG_PRINTER, name, value.data(),
                                              static_cast<int>(value.size()));
            }
        }
        return *this;
    }
    IPPTestMessage& integers(const char* name, std::vector<int> values) {
        ippAddIntegers(get(), IPP_TAG_PRINTER, IPP_TAG_INTEGER, name,
                       static_cast<int>(values.size()), values.data());
        return *this;
    }
    IPPTestMessage& resolution(const char* name, int cross, int feed,
                               ipp_res_t units = IPP_RES_PER_INCH) {
        ippAddResolution(get(), IPP_TAG_PRINTER, name, units, cross, feed);
        return *this;
    }

    struct Member {
        const char* name;
        ipp_tag_t syntax;
        const char* value;
    };
    using Collection = std::vector<Member>;

    IPPTestMessage& collections(const char* name, const std::vector<Collection>& collections) {
        ipp_attribute_t* attribute = nullptr;
        for (const Collection& members : collections) {
            const IPPMessage collection(ippNew());
            for (const Member& member : members) {
                ippAddString(collection.get(), IPP_TAG_ZERO, member.syntax, member.name, nullptr,
                             member.value);
            }
            if (attribute) {
                ippSetCollection(get(), &attribute, ippGetCount(attribute), collection.get());
            } else {
                attribute = ippAddCollection(get(), IPP_TAG_PRINTER, name, collection.get());
            }
        }
        return *this;
    }

    std::shared_ptr<const ReportedDeviceStatus> status() const {
        return IPPStatusMapping::statusForAnswer(
            IPPAnswer(get(), DroppedValues(IPPStatusMapping::meaningOfDrop)));
    }

  private:
    IPPMessage message_;
};

}  // namespace TkPPDUpdating::Testing
