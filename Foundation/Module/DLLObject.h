// CT_DLLObject: the object with which another module of the suite describes itself. It is a static
// object of that module, which passes the loader's notifications on to v_OnNotify.
//
// Errors: records none. Threads: notified under the loader's lock, read from any thread afterwards.
#ifndef FOUNDATION_MODULE_DLLOBJECT_H
#define FOUNDATION_MODULE_DLLOBJECT_H

#include "Foundation/Core/Version/AppVersion.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class ZELKOR_API CT_DLLObject {
public:
    // The display name is cut to 255 units; a null name is empty. Without `keepThreadNotifications`
    // the module is not told of threads once it was attached.
    CT_DLLObject(const char16_t* name, BOOL keepThreadNotifications);
    virtual ~CT_DLLObject() = default;
    CT_DLLObject(const CT_DLLObject&) = delete;
    CT_DLLObject& operator=(const CT_DLLObject&) = delete;

    // To be called with the reason codes of DLLMain.h; others are ignored. Attaching stores the
    // instance and the module's path, cut to 259 units, before the hook is called.
    void v_OnNotify(HINSTANCE instance, unsigned int reason);

    [[nodiscard]] HINSTANCE h_GetInstance() const { return instance_; }
    [[nodiscard]] const char16_t* qcuz_GetName() const { return name_; }
    [[nodiscard]] const char16_t* qcuz_GetPath() const { return path_; }
    [[nodiscard]] const CT_AppVersion* pcco_GetVersion() const { return &version_; }

protected:
    virtual void vv_AfterProcessAttach(HINSTANCE /*instance*/) {}
    virtual void vv_AfterProcessDetach(HINSTANCE /*instance*/) {}
    virtual void vv_AfterThreadAttach(HINSTANCE /*instance*/) {}
    virtual void vv_AfterThreadDetach(HINSTANCE /*instance*/) {}

private:
    static constexpr unsigned int kPathSize = 260;
    static constexpr unsigned int kNameSize = 256;

    void v_SetInstance(HINSTANCE instance);
    // Writes "*** name (path): Process Attach (pid 0x1F4)" and the like to the debugger output, in
    // six pieces. For debugging a module: nothing calls it.
    [[maybe_unused]] void v_PrintMessage(unsigned int reason) const;
    friend struct DLLObjectTestAccess;

    HINSTANCE instance_ = nullptr;
    char16_t path_[kPathSize] = {};
    char16_t name_[kNameSize] = {};
    CT_AppVersion version_;
    BOOL keep_thread_notifications_;
};

#endif
