// CT_Exception: what the library throws beside exhausted memory: a code and a text.
// CT_IPC_TimeOutException: thrown when waiting for a synchronisation object took too long.
//
// Whoever throws records the place first, with the exception manager; whoever handles the exception
// clears that record:
//
//   const CT_Exception exception(22, u"No such locale");
//   CT_ExceptionManager::spco_Get()->v_AddLocation(__FILE__, __LINE__, exception.n_GetCode(),
//                                                  exception.qcuz_GetText());
//   throw exception;
//
// Copies share the text. Copying allocates nothing and does not throw.
#ifndef FOUNDATION_CORE_EXCEPTION_EXCEPTION_H
#define FOUNDATION_CORE_EXCEPTION_EXCEPTION_H

#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/Export.h"

class ZELKOR_API CT_Exception {
public:
    explicit CT_Exception(unsigned int code) noexcept : code_(code) {}
    // A null text is empty. Running out of memory throws CT_SmartHeapException.
    CT_Exception(unsigned int code, const char16_t* text) : code_(code), text_(text) {}
    CT_Exception(const CT_Exception& other) noexcept = default;
    CT_Exception& operator=(const CT_Exception& other) noexcept = default;
    virtual ~CT_Exception();

    [[nodiscard]] unsigned int n_GetCode() const noexcept { return code_; }
    // Never null; good as long as this object.
    [[nodiscard]] const char16_t* qcuz_GetText() const noexcept { return text_.qcuz_Get(); }

private:
    unsigned int code_;
    CT_UString text_;
};

class ZELKOR_API CT_IPC_TimeOutException : public CT_Exception {
public:
    static constexpr unsigned int kCode = 258;

    // Code 258, no text.
    CT_IPC_TimeOutException() noexcept : CT_Exception(kCode) {}
    CT_IPC_TimeOutException(const CT_IPC_TimeOutException&) noexcept = default;
    CT_IPC_TimeOutException& operator=(const CT_IPC_TimeOutException&) noexcept = default;
    ~CT_IPC_TimeOutException() override;
};

#endif
