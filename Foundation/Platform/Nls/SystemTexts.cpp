// The English texts of the system's error numbers, as its public documentation lists them. A switch
// rather than a table of pointers: it needs no relocation.
#include "Foundation/Platform/LastError.h"

namespace platform {

namespace {

constexpr std::uint32_t kWin32Facility = 0x80070000;

std::u16string_view TextOf(std::uint32_t number) noexcept {
    switch (number) {
        case 0:
            return u"The operation completed successfully.\r\n";
        case 1:
            return u"Incorrect function.\r\n";
        case 2:
            return u"The system cannot find the file specified.\r\n";
        case 3:
            return u"The system cannot find the path specified.\r\n";
        case 4:
            return u"The system cannot open the file.\r\n";
        case 5:
            return u"Access is denied.\r\n";
        case 6:
            return u"The handle is invalid.\r\n";
        case 7:
            return u"The storage control blocks were destroyed.\r\n";
        case 8:
            return u"Not enough storage is available to process this command.\r\n";
        case 9:
            return u"The storage control block address is invalid.\r\n";
        case 10:
            return u"The environment is incorrect.\r\n";
        case 11:
            return u"An attempt was made to load a program with an incorrect format.\r\n";
        case 12:
            return u"The access code is invalid.\r\n";
        case 13:
            return u"The data is invalid.\r\n";
        case 14:
            return u"Not enough storage is available to complete this operation.\r\n";
        case 15:
            return u"The system cannot find the drive specified.\r\n";
        case 16:
            return u"The directory cannot be removed.\r\n";
        case 17:
            return u"The system cannot move the file to a different disk drive.\r\n";
        case 18:
            return u"There are no more files.\r\n";
        case 19:
            return u"The media is write protected.\r\n";
        case 20:
            return u"The system cannot find the device specified.\r\n";
        case 21:
            return u"The device is not ready.\r\n";
        case 22:
            return u"The device does not recognize the command.\r\n";
        case 23:
            return u"Data error (cyclic redundancy check).\r\n";
        case 24:
            return u"The program issued a command but the command length is incorrect.\r\n";
        case 25:
            return u"The drive cannot locate a specific area or track on the disk.\r\n";
        case 26:
            return u"The specified disk or diskette cannot be accessed.\r\n";
        case 27:
            return u"The drive cannot find the sector requested.\r\n";
        case 28:
            return u"The printer is out of paper.\r\n";
        case 29:
            return u"The system cannot write to the specified device.\r\n";
        case 30:
            return u"The system cannot read from the specified device.\r\n";
        case 31:
            return u"A device attached to the system is not functioning.\r\n";
        case 32:
            return u"The process cannot access the file because it is being used by another "
                   u"process.\r\n";
        case 33:
            return u"The process cannot access the file because another process has locked a "
                   u"portion of the file.\r\n";
        case 34:
            return u"The wrong diskette is in the drive.\r\nInsert %2 (Volume Serial Number: %3) "
                   u"into "
                   u"drive %1.\r\n";
        case 36:
            return u"Too many files opened for sharing.\r\n";
        case 38:
            return u"Reached the end of the file.\r\n";
        case 39:
            return u"The disk is full.\r\n";
        case 50:
            return u"The request is not supported.\r\n";
        case 51:
            return u"Windows cannot find the network path. Verify that the network path is correct "
                   u"and the destination computer is not busy or turned off.\r\n";
        case 52:
            return u"You were not connected because a duplicate name exists on the network.\r\n";
        case 53:
            return u"The network path was not found.\r\n";
        case 54:
            return u"The network is busy.\r\n";
        case 55:
            return u"The specified network resource or device is no longer available.\r\n";
        case 56:
            return u"The network BIOS command limit has been reached.\r\n";
        case 57:
            return u"A network adapter hardware error occurred.\r\n";
        case 58:
            return u"The specified server cannot perform the requested operation.\r\n";
        case 59:
            return u"An unexpected network error occurred.\r\n";
        case 60:
            return u"The remote adapter is not compatible.\r\n";
        case 64:
            return u"The specified network name is no longer available.\r\n";
        case 65:
            return u"Network access is denied.\r\n";
        case 66:
            return u"The network resource type is not correct.\r\n";
        case 67:
            return u"The network name cannot be found.\r\n";
        case 68:
            return u"The name limit for the local computer network adapter card was exceeded.\r\n";
        case 69:
            return u"The network BIOS session limit was exceeded.\r\n";
        case 70:
            return u"The remote server has been paused or is in the process of being started.\r\n";
        case 71:
            return u"No more connections can be made to this remote computer at this time because "
                   u"there are already as many connections as the computer can accept.\r\n";
        case 80:
            return u"The file exists.\r\n";
        case 82:
            return u"The directory or file cannot be created.\r\n";
        case 83:
            return u"Fail on INT 24.\r\n";
        case 84:
            return u"Storage to process this request is not available.\r\n";
        case 85:
            return u"The local device name is already in use.\r\n";
        case 86:
            return u"The specified network password is not correct.\r\n";
        case 87:
            return u"The parameter is incorrect.\r\n";
        case 88:
            return u"A write fault occurred on the network.\r\n";
        case 89:
            return u"The system cannot start another process at this time.\r\n";
        case 100:
            return u"Cannot create another system semaphore.\r\n";
        case 101:
            return u"The exclusive semaphore is owned by another process.\r\n";
        case 102:
            return u"The semaphore is set and cannot be closed.\r\n";
        case 103:
            return u"The semaphore cannot be set again.\r\n";
        case 105:
            return u"The previous ownership of this semaphore has ended.\r\n";
        case 108:
            return u"The disk is in use or locked by another process.\r\n";
        case 109:
            return u"The pipe has been ended.\r\n";
        case 110:
            return u"The system cannot open the device or file specified.\r\n";
        case 111:
            return u"The file name is too long.\r\n";
        case 112:
            return u"There is not enough space on the disk.\r\n";
        case 113:
            return u"No more internal file identifiers available.\r\n";
        case 114:
            return u"The target internal file identifier is incorrect.\r\n";
        case 117:
            return u"The IOCTL call made by the application program is not correct.\r\n";
        case 118:
            return u"The verify-on-write switch parameter value is not correct.\r\n";
        case 119:
            return u"The system does not support the command requested.\r\n";
        case 120:
            return u"This function is not supported on this system.\r\n";
        case 121:
            return u"The semaphore timeout period has expired.\r\n";
        case 122:
            return u"The data area passed to a system call is too small.\r\n";
        case 123:
            return u"The filename, directory name, or volume label syntax is incorrect.\r\n";
        case 124:
            return u"The system call level is not correct.\r\n";
        case 125:
            return u"The disk has no volume label.\r\n";
        case 126:
            return u"The specified module could not be found.\r\n";
        case 127:
            return u"The specified procedure could not be found.\r\n";
        case 128:
            return u"There are no child processes to wait for.\r\n";
        case 130:
            return u"Attempt to use a file handle to an open disk partition for an operation other "
                   u"than raw disk I/O.\r\n";
        case 131:
            return u"An attempt was made to move the file pointer before the beginning of the "
                   u"file.\r\n";
        case 132:
            return u"The file pointer cannot be set on the specified device or file.\r\n";
        case 142:
            return u"The system cannot perform a JOIN or SUBST at this time.\r\n";
        case 144:
            return u"The directory is not the root directory.\r\n";
        case 145:
            return u"The directory is not empty.\r\n";
        case 146:
            return u"The path specified is being used in a substitute.\r\n";
        case 148:
            return u"The path specified cannot be used at this time.\r\n";
        case 154:
            return u"The volume label you entered exceeds the label character limit of the target "
                   u"file system.\r\n";
        case 155:
            return u"Cannot create another thread.\r\n";
        case 156:
            return u"The recipient process has refused the signal.\r\n";
        case 157:
            return u"The segment is already discarded and cannot be locked.\r\n";
        case 158:
            return u"The segment is already unlocked.\r\n";
        case 159:
            return u"The address for the thread ID is not correct.\r\n";
        case 160:
            return u"One or more arguments are not correct.\r\n";
        case 161:
            return u"The specified path is invalid.\r\n";
        case 162:
            return u"A signal is already pending.\r\n";
        case 164:
            return u"No more threads can be created in the system.\r\n";
        case 167:
            return u"Unable to lock a region of a file.\r\n";
        case 170:
            return u"The requested resource is in use.\r\n";
        case 173:
            return u"A lock request was not outstanding for the supplied cancel region.\r\n";
        case 174:
            return u"The file system does not support atomic changes to the lock type.\r\n";
        case 180:
            return u"The system detected a segment number that was not correct.\r\n";
        case 182:
            return u"The operating system cannot run %1.\r\n";
        case 183:
            return u"Cannot create a file when that file already exists.\r\n";
        case 186:
            return u"The flag passed is not correct.\r\n";
        case 187:
            return u"The specified system semaphore name was not found.\r\n";
        case 193:
            return u"%1 is not a valid Win32 application.\r\n";
        case 203:
            return u"The system could not find the environment option that was entered.\r\n";
        case 205:
            return u"No process in the command subtree has a signal handler.\r\n";
        case 206:
            return u"The filename or extension is too long.\r\n";
        case 208:
            return u"The global filename characters, * or ?, are entered incorrectly or too many "
                   u"global filename characters are specified.\r\n";
        case 212:
            return u"The segment is locked and cannot be reallocated.\r\n";
        case 215:
            return u"Cannot nest calls to LoadModule.\r\n";
        case 222:
            return u"The file type being saved or retrieved has been blocked.\r\n";
        case 223:
            return u"The file size exceeds the limit allowed and cannot be saved.\r\n";
        case 230:
            return u"The pipe state is invalid.\r\n";
        case 231:
            return u"All pipe instances are busy.\r\n";
        case 232:
            return u"The pipe is being closed.\r\n";
        case 233:
            return u"No process is on the other end of the pipe.\r\n";
        case 234:
            return u"More data is available.\r\n";
        case 240:
            return u"The session was canceled.\r\n";
        case 254:
            return u"The specified extended attribute name was invalid.\r\n";
        case 255:
            return u"The extended attributes are inconsistent.\r\n";
        case 258:
            return u"The wait operation timed out.\r\n";
        case 259:
            return u"No more data is available.\r\n";
        case 266:
            return u"The copy functions cannot be used.\r\n";
        case 267:
            return u"The directory name is invalid.\r\n";
        case 275:
            return u"The extended attributes did not fit in the buffer.\r\n";
        case 282:
            return u"The mounted file system does not support extended attributes.\r\n";
        case 288:
            return u"Attempt to release mutex not owned by caller.\r\n";
        case 298:
            return u"Too many posts were made to a semaphore.\r\n";
        case 299:
            return u"Only part of a ReadProcessMemory or WriteProcessMemory request was "
                   u"completed.\r\n";
        case 317:
            return u"The system cannot find message text for message number 0x%1 in the message "
                   u"file for %2.\r\n";
        case 487:
            return u"Attempt to access invalid address.\r\n";
        case 534:
            return u"Arithmetic result exceeded 32 bits.\r\n";
        case 535:
            return u"There is a process on other end of the pipe.\r\n";
        case 536:
            return u"Waiting for a process to open the other end of the pipe.\r\n";
        case 995:
            return u"The I/O operation has been aborted because of either a thread exit or an "
                   u"application request.\r\n";
        case 996:
            return u"Overlapped I/O event is not in a signaled state.\r\n";
        case 997:
            return u"Overlapped I/O operation is in progress.\r\n";
        case 998:
            return u"Invalid access to memory location.\r\n";
        case 999:
            return u"Error performing inpage operation.\r\n";
        case 1000:
            return u"Cannot complete this function.\r\n";
        case 1001:
            return u"Recursion too deep; the stack overflowed.\r\n";
        case 1002:
            return u"The window cannot act on the sent message.\r\n";
        case 1003:
            return u"Cannot complete this function.\r\n";
        case 1004:
            return u"Invalid flags.\r\n";
        case 1005:
            return u"The volume does not contain a recognized file system. Please make sure that "
                   u"all required file system drivers are loaded and that the volume is not "
                   u"corrupted.\r\n";
        case 1006:
            return u"The volume for a file has been externally altered so that the opened file is "
                   u"no longer valid.\r\n";
        case 1007:
            return u"The requested operation cannot be performed in full-screen mode.\r\n";
        case 1008:
            return u"An attempt was made to reference a token that does not exist.\r\n";
        case 1009:
            return u"The configuration registry database is corrupt.\r\n";
        case 1010:
            return u"The configuration registry key is invalid.\r\n";
        case 1011:
            return u"The configuration registry key could not be opened.\r\n";
        case 1012:
            return u"The configuration registry key could not be read.\r\n";
        case 1013:
            return u"The configuration registry key could not be written.\r\n";
        case 1017:
            return u"The system has attempted to load or restore a file into the registry, but the "
                   u"specified file is not in a registry file format.\r\n";
        case 1018:
            return u"Illegal operation attempted on a registry key that has been marked for "
                   u"deletion.\r\n";
        case 1019:
            return u"System could not allocate the required space in a registry log.\r\n";
        case 1020:
            return u"Cannot create a symbolic link in a registry key that already has subkeys or "
                   u"values.\r\n";
        case 1021:
            return u"Cannot create a stable subkey under a volatile parent key.\r\n";
        case 1104:
            return u"No more data is on the tape.\r\n";
        case 1110:
            return u"The media in the drive may have changed.\r\n";
        case 1111:
            return u"The I/O bus was reset.\r\n";
        case 1112:
            return u"No media in drive.\r\n";
        case 1113:
            return u"No mapping for the Unicode character exists in the target multi-byte code "
                   u"page.\r\n";
        case 1114:
            return u"A dynamic link library (DLL) initialization routine failed.\r\n";
        case 1115:
            return u"A system shutdown is in progress.\r\n";
        case 1117:
            return u"The request could not be performed because of an I/O device error.\r\n";
        case 1130:
            return u"Not enough server storage is available to process this command.\r\n";
        case 1131:
            return u"A potential deadlock condition has been detected.\r\n";
        case 1142:
            return u"An attempt was made to create more links on a file than the file system "
                   u"supports.\r\n";
        case 1150:
            return u"The specified program requires a newer version of Windows.\r\n";
        case 1157:
            return u"One of the library files needed to run this application cannot be found.\r\n";
        case 1158:
            return u"The current process has used all of its system allowance of handles for "
                   u"Window Manager objects.\r\n";
        case 1163:
            return u"The indicated source element has no media.\r\n";
        case 1168:
            return u"Element not found.\r\n";
        case 1169:
            return u"There was no match for the specified key in the index.\r\n";
        case 1200:
            return u"The specified device name is invalid.\r\n";
        case 1203:
            return u"The network path was either typed incorrectly, does not exist, or the network "
                   u"provider is not currently available. Please try retyping the path or contact "
                   u"your network administrator.\r\n";
        case 1223:
            return u"The operation was canceled by the user.\r\n";
        case 1224:
            return u"The requested operation cannot be performed on a file with a user-mapped "
                   u"section open.\r\n";
        case 1225:
            return u"The remote computer refused the network connection.\r\n";
        case 1231:
            return u"The network location cannot be reached. For information about network "
                   u"troubleshooting, see Windows Help.\r\n";
        case 1235:
            return u"The request was aborted.\r\n";
        case 1237:
            return u"The operation could not be completed. A retry should be performed.\r\n";
        case 1306:
            return u"Indicates two revision levels are incompatible.\r\n";
        case 1307:
            return u"This security ID may not be assigned as the owner of this object.\r\n";
        case 1314:
            return u"A required privilege is not held by the client.\r\n";
        case 1359:
            return u"An internal error occurred.\r\n";
        case 1392:
            return u"The file or directory is corrupted and unreadable.\r\n";
        case 1393:
            return u"The disk structure is corrupted and unreadable.\r\n";
        case 1400:
            return u"Invalid window handle.\r\n";
        case 1401:
            return u"Invalid menu handle.\r\n";
        case 1402:
            return u"Invalid cursor handle.\r\n";
        case 1407:
            return u"Cannot find window class.\r\n";
        case 1408:
            return u"Invalid window; it belongs to other thread.\r\n";
        case 1409:
            return u"Hot key is already registered.\r\n";
        case 1410:
            return u"Class already exists.\r\n";
        case 1411:
            return u"Class does not exist.\r\n";
        case 1412:
            return u"Class still has open windows.\r\n";
        case 1413:
            return u"Invalid index.\r\n";
        case 1418:
            return u"Thread does not have a clipboard open.\r\n";
        case 1450:
            return u"Insufficient system resources exist to complete the requested service.\r\n";
        case 1451:
            return u"Insufficient system resources exist to complete the requested service.\r\n";
        case 1452:
            return u"Insufficient system resources exist to complete the requested service.\r\n";
        case 1453:
            return u"Insufficient quota to complete the requested service.\r\n";
        case 1454:
            return u"Insufficient quota to complete the requested service.\r\n";
        case 1455:
            return u"The paging file is too small for this operation to complete.\r\n";
        case 1460:
            return u"This operation returned because the timeout period expired.\r\n";
        case 1784:
            return u"The supplied user buffer is not valid for the requested operation.\r\n";
        case 1812:
            return u"The specified image file did not contain a resource section.\r\n";
        case 1813:
            return u"The specified resource type cannot be found in the image file.\r\n";
        case 1814:
            return u"The specified resource name cannot be found in the image file.\r\n";
        case 1815:
            return u"The specified resource language ID cannot be found in the image file.\r\n";
        case 1816:
            return u"Not enough quota is available to process this command.\r\n";
        case 0x80000001u:
            return u"Not implemented\r\n";
        case 0x80004001u:
            return u"Not implemented\r\n";
        case 0x80004002u:
            return u"No such interface supported\r\n";
        case 0x80004003u:
            return u"Invalid pointer\r\n";
        case 0x80004004u:
            return u"Operation aborted\r\n";
        case 0x80004005u:
            return u"Unspecified error\r\n";
        case 0x8000000Au:
            return u"The data necessary to complete this operation is not yet available.\r\n";
        case 0x8000FFFFu:
            return u"Catastrophic failure\r\n";
        case 0x80010106u:
            return u"Cannot change thread mode after it is set.\r\n";
        case 0x8001010Eu:
            return u"The application called an interface that was marshalled for a different "
                   u"thread.\r\n";
        case 0x80020005u:
            return u"Type mismatch.\r\n";
        case 0x80020006u:
            return u"Unknown name.\r\n";
        case 0x80020009u:
            return u"Exception occurred.\r\n";
        case 0x8002000Eu:
            return u"Invalid number of parameters.\r\n";
        case 0x80030001u:
            return u"Unable to perform requested operation.\r\n";
        case 0x80030002u:
            return u"%1 could not be found.\r\n";
        case 0x80030005u:
            return u"Access Denied.\r\n";
        case 0x80030006u:
            return u"Attempted an operation on an invalid object.\r\n";
        case 0x80030008u:
            return u"There is insufficient memory available to complete operation.\r\n";
        case 0x80030009u:
            return u"Invalid pointer error.\r\n";
        case 0x80030020u:
            return u"A share violation has occurred.\r\n";
        case 0x80030021u:
            return u"A lock violation has occurred.\r\n";
        case 0x80030057u:
            return u"Invalid parameter error.\r\n";
        case 0x80030070u:
            return u"There is insufficient disk space to complete operation.\r\n";
        case 0x80040110u:
            return u"Class does not support aggregation (or class object is remote)\r\n";
        case 0x80040154u:
            return u"Class not registered\r\n";
        case 0x800401F0u:
            return u"CoInitialize has not been called.\r\n";
        case 0x800401F1u:
            return u"CoInitialize has already been called.\r\n";
        case 0x800401F3u:
            return u"Invalid class string\r\n";
        case 0x800401FBu:
            return u"Object is not running.\r\n";
        default:
            return {};
    }
}

}  // namespace

std::u16string_view SystemText(std::uint32_t number) noexcept {
    // An HRESULT of the Win32 facility has the text of the number in its low half.
    if ((number & 0xFFFF0000) == kWin32Facility) return TextOf(number & 0xFFFF);
    return TextOf(number);
}

}  // namespace platform
