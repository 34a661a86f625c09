#include "Foundation/Core/Exception/Exception.h"

// The destructors are defined here so that the types are known once in the process.
CT_Exception::~CT_Exception() = default;
CT_IPC_TimeOutException::~CT_IPC_TimeOutException() = default;
