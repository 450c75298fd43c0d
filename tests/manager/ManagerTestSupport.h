#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core_interface/OrbCoreInterface.h"
#include "manager/OrbPPDConcreteUpdatingManager.h"
#include "tests/support/FakeCore.h"
#include "tests/support/ScriptedUpdater.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/TestDoubles.h"

namespace TkPPDUpdating::Testing {

/// A manager without updaters, a PPD file "the PPD's text" that parses, a queue "office" that has a
/// PPD, and a printer that answers.
class ManagerTest : public testing::Test {
  public:
    ManagerTest(const ManagerTest&) = delete;
    ManagerTest& operator=(const ManagerTest&) = delete;
    ~ManagerTest() override {
        for (const UpdaterScript* script : {&A::script, &B::script, &C::script}) {
            EXPECT_EQ(script->instancesAlive, 0) << "an updater outlived its operation";
        }
        A::script = B::script = C::script = {};
    }

  protected:
    using A = ScriptedUpdater<'A'>;
    using B = ScriptedUpdater<'B'>;
    using C = ScriptedUpdater<'C'>;

    ManagerTest() {
        A::script = B::script = C::script = {};
        const std::vector<const OrbClass*> builtIn(manager.registeredClasses().begin(),
                                                   manager.registeredClasses().end());
        for (const OrbClass* each : builtIn) {
            manager.unregisterUpdaterClass(each);
        }
        OrbCoreInterface::setCore(core);
        OrbCoreInterface::setCommunicationServices(services);
    }

    template <typename... Updaters>
    void useUpdaters() {
        (void(manager.registerUpdaterClass(&OrbClassOf<Updaters>())), ...);
    }

    static std::optional<std::string> textOf(const PPDText& contents) {
        return contents ? std::optional(*contents) : std::nullopt;
    }

    CoreInterfaceScope scope;
    TemporaryDirectory directory;
    const std::string path = directory.write("printer.ppd", "the PPD's text");
    const std::string unparsablePath = directory.write("letter.txt", "no PPD at all");
    std::shared_ptr<const OrbPPDFile> file = std::make_shared<EmptyPPDFile>();
    std::shared_ptr<const OrbPPDFile> queueFile = std::make_shared<EmptyPPDFile>();
    std::shared_ptr<FakeCore> core = std::make_shared<FakeCore>(
        FakeCore::Files{{path, file}}, FakeCore::Files{{"office", queueFile}});
    std::shared_ptr<const OrbCSDeviceStatus> status = std::make_shared<FakeDeviceStatus>();
    std::shared_ptr<FakeCommunicationServices> services =
        std::make_shared<FakeCommunicationServices>(status);
    OrbPPDConcreteUpdatingManager manager;
};

}  // namespace TkPPDUpdating::Testing
