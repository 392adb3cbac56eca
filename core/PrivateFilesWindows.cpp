#include "PrivateFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <windows.h>

#include <aclapi.h>
#include <memory>

// On Windows privacy is the file's access list: one entry for the user running
// the program, nothing inherited from the folder above.
namespace {

struct LocalFreer
{
    void operator()(void *p) const { LocalFree(p); }
};
using LocalPtr = std::unique_ptr<void, LocalFreer>;

const wchar_t *native(const QString &path, std::wstring *buffer)
{
    *buffer = QDir::toNativeSeparators(path).toStdWString();
    return buffer->c_str();
}

// The user of this process, as a security identifier.
std::unique_ptr<char[]> currentUser()
{
    HANDLE token = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token))
        return {};
    DWORD size = 0;
    GetTokenInformation(token, TokenUser, nullptr, 0, &size);
    std::unique_ptr<char[]> info(new char[size]);
    const bool ok = size > 0 && GetTokenInformation(token, TokenUser, info.get(), size, &size);
    CloseHandle(token);
    return ok ? std::move(info) : nullptr;
}

PSID userSid(const std::unique_ptr<char[]> &info)
{
    return info ? reinterpret_cast<TOKEN_USER *>(info.get())->User.Sid : nullptr;
}

// The operating system and the machine's administrators may always read a file.
bool isTrusted(PSID sid, PSID user)
{
    return EqualSid(sid, user) || IsWellKnownSid(sid, WinLocalSystemSid) || IsWellKnownSid(sid, WinBuiltinAdministratorsSid)
        || IsWellKnownSid(sid, WinCreatorOwnerSid);
}

}   // namespace

namespace PrivateFiles {

void RestrictNewFiles()
{
    // Windows has no creation mask: new files take their folder's access list,
    // which MakePrivateFolder narrows for the folders TendMark makes.
}

bool IsReadableByOthers(const QString &path)
{
    const auto info = currentUser();
    std::wstring buffer;
    PACL dacl = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (!userSid(info)
        || GetNamedSecurityInfoW(native(path, &buffer), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, &dacl, nullptr,
                                 &descriptor)
            != ERROR_SUCCESS)
        return false;
    const LocalPtr freeDescriptor(descriptor);
    if (!dacl)
        return true;   // no access list at all: everyone may do anything
    const DWORD readRights = FILE_READ_DATA | GENERIC_READ | GENERIC_ALL;
    for (DWORD i = 0; i < dacl->AceCount; ++i) {
        void *ace = nullptr;
        if (!GetAce(dacl, i, &ace))
            continue;
        const auto *header = static_cast<ACE_HEADER *>(ace);
        if (header->AceType != ACCESS_ALLOWED_ACE_TYPE || (header->AceFlags & INHERIT_ONLY_ACE))
            continue;
        const auto *allowed = static_cast<ACCESS_ALLOWED_ACE *>(ace);
        PSID sid = const_cast<DWORD *>(&allowed->SidStart);
        if ((allowed->Mask & readRights) && !isTrusted(sid, userSid(info)))
            return true;
    }
    return false;
}

bool MakePrivate(const QString &path)
{
    const auto info = currentUser();
    if (!userSid(info) || !QFileInfo::exists(path))
        return false;
    EXPLICIT_ACCESS_W access {};
    access.grfAccessPermissions = GENERIC_ALL;
    access.grfAccessMode = SET_ACCESS;
    access.grfInheritance = QFileInfo(path).isDir() ? SUB_CONTAINERS_AND_OBJECTS_INHERIT : NO_INHERITANCE;
    access.Trustee.TrusteeForm = TRUSTEE_IS_SID;
    access.Trustee.TrusteeType = TRUSTEE_IS_USER;
    access.Trustee.ptstrName = static_cast<LPWSTR>(userSid(info));
    PACL dacl = nullptr;
    if (SetEntriesInAclW(1, &access, nullptr, &dacl) != ERROR_SUCCESS)
        return false;
    const LocalPtr freeDacl(dacl);
    std::wstring buffer;
    // A protected list stops the folder above from adding its entries back.
    return SetNamedSecurityInfoW(const_cast<wchar_t *>(native(path, &buffer)), SE_FILE_OBJECT,
                                 DACL_SECURITY_INFORMATION | PROTECTED_DACL_SECURITY_INFORMATION, nullptr, nullptr, dacl, nullptr)
        == ERROR_SUCCESS;
}

bool MakePrivateFolder(const QString &path)
{
    return QDir().mkpath(path) && MakePrivate(path);
}

bool OwnedByMe(const QString &path)
{
    const auto info = currentUser();
    std::wstring buffer;
    PSID owner = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (!userSid(info)
        || GetNamedSecurityInfoW(native(path, &buffer), SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION, &owner, nullptr, nullptr, nullptr,
                                 &descriptor)
            != ERROR_SUCCESS)
        return false;
    const LocalPtr freeDescriptor(descriptor);
    if (EqualSid(owner, userSid(info)))
        return true;
    // Files made by an elevated program belong to the administrators group.
    BOOL member = FALSE;
    return IsWellKnownSid(owner, WinBuiltinAdministratorsSid) && CheckTokenMembership(nullptr, owner, &member) && member;
}

bool MoveIntoPlace(const QString &finished, const QString &target, QString *error)
{
    std::wstring from, to;
    if (MoveFileExW(native(finished, &from), native(target, &to), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        return true;
    if (error)
        *error = QStringLiteral("The file '%1' could not be put in place.").arg(QDir::toNativeSeparators(target));
    return false;
}

}   // namespace PrivateFiles

FileIdentity FileIdentity::Of(const QString &path)
{
    std::wstring buffer;
    HANDLE file = CreateFileW(native(path, &buffer), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                              FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return {};
    BY_HANDLE_FILE_INFORMATION info {};
    const bool ok = GetFileInformationByHandle(file, &info);
    CloseHandle(file);
    if (!ok)
        return {};
    return {true, info.dwVolumeSerialNumber, (quint64(info.nFileIndexHigh) << 32) | info.nFileIndexLow};
}
