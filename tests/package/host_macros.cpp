// What windows.h and its like define where a host does not hold them back. Anything that the
// public headers name so would be replaced.

#define min(a, b) (((a) < (b)) ? (a) : (b))
#define max(a, b) (((a) > (b)) ? (a) : (b))
#define small char
#define near
#define far
#define NEAR
#define FAR
#define interface struct
#define pascal
#define cdecl
#define IN
#define OUT
#define OPTIONAL
#define CONST const
#define VOID void
#define CALLBACK
#define WINAPI
#define STRICT 1
#define TRUE 1
#define FALSE 0
#define ERROR 0
#define NO_ERROR 0L
#define DELETE 0x00010000L
#define READ_CONTROL 0x00020000L
#define SYNCHRONIZE 0x00100000L
#define INFINITE 0xFFFFFFFF
#define ABSOLUTE 1
#define RELATIVE 2
#define IGNORE 0
#define DOMAIN 1
#define OVERFLOW 3
#define UNDERFLOW 4
#define TRANSPARENT 1
#define OPAQUE 2
#define DIFFERENCE 11
#define THIS_CLASS 1
#define TEXT(text) L##text
#define GetMessage GetMessageA
#define SendMessage SendMessageA
#define PostMessage PostMessageA
#define LoadString LoadStringA
#define LoadLibrary LoadLibraryA
#define GetObject GetObjectA
#define GetUserName GetUserNameA
#define GetCurrentTime() GetTickCount()
#define GetClassInfo GetClassInfoA
#define GetEnvironmentStrings GetEnvironmentStringsA
#define GetFreeSpace(w) (0x100000L)
#define CreateEvent CreateEventA
#define CreateMutex CreateMutexA
#define CreateFile CreateFileA
#define DeleteFile DeleteFileA
#define CopyFile CopyFileA
#define MoveFile MoveFileA
#define DrawText DrawTextA
#define ReportEvent ReportEventA
#define FormatMessage FormatMessageA
#define FindText FindTextA
#define StartDoc StartDocA
#define Yield()
#define EMPTY
#define check(expression) assert(expression)
#define verify(expression) assert(expression)
#define require(expression) assert(expression)
#define assert(expression) ((void)0)
#define emit
#define signals protected
#define slots
#define foreach for
#define Success 0
#define Bool int
#define True 1
#define False 0
#define Always 2
#define unix 1
#define linux 1

#include "all_headers.inc"

// What they declare can be used, too.
unsigned long UseWhatTheyDeclare()
{
    SignUtils session(nullptr, nullptr);
    session.SetConnexionString("");
    TSimpleStringW text;
    text.LoadStringA(1816U);
    TArray<signerInfo> signers(1);
    signers.Add(signerInfo());
    return session.CheckSignRules("", text.SafeGetString());
}
