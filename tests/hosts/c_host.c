/* A host in C: the header made for it, the loader, and nothing else. */
#include <velcoran/velcoran_c.h>

#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static void expect(int is_true, const char* what) {
    if (is_true) return;
    fprintf(stderr, "not so: %s\n", what);
    exit(1);
}

/* --- a listener of ours */

struct Listener {
    velcoran_IWindowEvents events;
    uint32_t count;
    int closed;
};

static velcoran_HResult query(velcoran_IWindowEvents* self, const velcoran_Guid* id, void** object) {
    const int is_known = memcmp(id, &velcoran_IWindowEvents_id, sizeof *id) == 0;
    *object = is_known ? self : NULL;
    if (is_known) ++((struct Listener*)self)->count;
    return is_known ? velcoran_kOk : velcoran_kNoInterface;
}
static uint32_t add(velcoran_IWindowEvents* self) { return ++((struct Listener*)self)->count; }
static uint32_t release(velcoran_IWindowEvents* self) { return --((struct Listener*)self)->count; }
static velcoran_HResult closed(velcoran_IWindowEvents* self) {
    ++((struct Listener*)self)->closed;
    return velcoran_kOk;
}
static velcoran_HResult released(velcoran_IWindowEvents* self, velcoran_IConnection* connection) {
    (void)self, (void)connection;
    return velcoran_kOk;
}
static velcoran_HResult open_document(velcoran_IWindowEvents* self, velcoran_Bstr document, velcoran_Bstr kind,
                                      velcoran_Bstr partner) {
    (void)self, (void)document, (void)kind, (void)partner;
    return velcoran_kOk;
}
static const velcoran_IWindowEvents_table kTable = {query, add, release, closed, released, open_document};

int main(int argc, char** argv) {
    expect(argc == 2, "one argument, the library");
    void* library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    expect(library != NULL, "the library loads");
    velcoran_DllGetClassObject get_class_object;
    velcoran_DllCanUnloadNow can_unload;
    *(void**)&get_class_object = dlsym(library, "DllGetClassObject");
    *(void**)&can_unload = dlsym(library, "DllCanUnloadNow");

    velcoran_IReportWindow* window = NULL;
    velcoran_IClassFactory* factory = NULL;
    velcoran__clsVelcoran* velcoran = NULL;
    expect(get_class_object(&velcoran_kClassVelcoran, &velcoran_IClassFactory_id, (void**)&factory) == velcoran_kOk,
           "a class factory");
    expect(factory->table->QueryInterface(factory, &velcoran_IReportWindow_id, (void**)&window) == velcoran_kOk,
           "the window's interface");
    expect(factory->table->CreateInstance(factory, NULL, &velcoran__clsVelcoran_id, (void**)&velcoran) == velcoran_kOk,
           "an object");

    struct Listener listener = {{&kTable}, 1, 0};
    expect(window->table->Advise(window, &listener.events) == velcoran_kOk && listener.count == 2, "a listener");
    expect(velcoran->table->Incarca(velcoran, NULL, NULL, 46096, NULL) == (int32_t)0x800A005BU, "no connection is 91");
    velcoran_IErrorSource* error = NULL;
    int32_t number = 0;
    velcoran_Bstr description = NULL, source = NULL;
    expect(velcoran->table->QueryInterface(velcoran, &velcoran_IErrorSource_id, (void**)&error) == velcoran_kOk &&
               error->table->LastError(error, &number, &description, &source) == velcoran_kOk && number == 91,
           "the error tells of itself");
    free((char*)description - sizeof(uint32_t));
    free((char*)source - sizeof(uint32_t));
    expect(window->table->Close(window) == velcoran_kOk, "the window closes");
    while (window->table->Dispatch(window, 0) == velcoran_kOk) {
    }
    expect(listener.closed == 1, "the listener has heard of it");
    expect(window->table->Advise(window, NULL) == velcoran_kOk && listener.count == 1, "nobody listens");
    error->table->Release(error);
    velcoran->table->Release(velcoran);
    window->table->Release(window);
    factory->table->Release(factory);
    expect(can_unload() == velcoran_kOk && dlclose(library) == 0, "the library goes");
    return 0;
}
