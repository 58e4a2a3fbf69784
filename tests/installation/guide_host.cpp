// A host made of the guide's blocks: each of them is called and has to do what the guide says.
#include <velcoran/activation.h>
#include <velcoran/mesaje.h>
#include <velcoran/velcoran.h>
#include <velcoran/window.h>

#include <cstdio>
#include <cstdlib>

namespace com = velcoran::com;
using velcoran::activation::Class;

com::Ref<velcoran::IConnection> openConnection();
com::HResult openByName(velcoran::_clsVelcoran& velcoran, velcoran::IConnection* connection);
com::Ref<velcoran::IConnection> fenced(const Class& component, velcoran::IConnection* connection);
com::HResult listen(const Class& component);
com::HResult registerMessages(const Class& component);
std::int32_t registerFor(const Class& component, com::Text& description);

namespace {

void expect(bool isTrue, const char* what) {
    if (isTrue) return;
    std::fprintf(stderr, "not so: %s\n", what);
    std::exit(1);
}

void tryRegistry(const char* file) {
    const auto entries = velcoran::activation::readEntries(file);
    expect(entries.size() == 1 && entries[0].library == "/usr/lib/contabil/libmesaje.so", "the registry file is read");
}

void tryRegistering(const Class& component) {
    com::Text description;
    expect(registerFor(component, description) == 0, "it is registered");
    setenv("XDG_DATA_HOME", "/proc", 1);
    expect(registerFor(component, description) == 75 && !description.view().empty(), "its failure has a reason");
}

}  // namespace

int main(int, char** arguments) {
    tryRegistry(arguments[1]);
    std::vector<velcoran::activation::Attempt> attempts;
    const Class component = velcoran::activation::find("velcoran.CLSVELCORAN", attempts);
    expect(static_cast<bool>(component), "the component is found");
    expect(registerMessages(component) == com::kOk && listen(component) == com::kOk, "the host is heard");
    const auto velcoran = component.create<velcoran::_clsVelcoran>();
    const auto window = component.factory().as<velcoran::IReportWindow>();
    const auto connection = fenced(component, openConnection().get());
    com::Ref<velcoran::IRows> rows;
    expect(connection->Execute(com::Text(u"DELETE FROM An").get(), rows.receive()) == -2147217900, "the fence stands");
    expect(openByName(*velcoran, connection.get()) == com::kOk, "the window opens by name");
    for (int round = 0; round < 20; ++round) expect(window->Dispatch(5) == com::kOk, "the window is open");
    expect(window->Close() == com::kOk, "the window closes");
    while (window->Dispatch(0) == com::kOk) {
    }
    expect(velcoran->Incarca(com::Text(u"Import").get(), nullptr, 46096, nullptr) < 0, "without a connection it fails");
    expect(window->Close() == com::kOk, "and closes");
    const auto objects = component.factory().as<com::IHostObjects>();
    expect(objects->Revoke(velcoran::kClassMesaje) == com::kOk, "the message class was registered");
    tryRegistering(component);
    return 0;
}
