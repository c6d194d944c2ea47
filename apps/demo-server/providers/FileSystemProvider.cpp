#include "providers/FileSystemProvider.h"

#include "providers/Machine.h"

#include <sys/statvfs.h>

#include <algorithm>
#include <array>
#include <set>

namespace demo {

namespace {

struct Mount {
    std::string device;
    std::string path;
    std::string type;
    std::string options;
};

/// /proc/mounts writes blanks and backslashes of a path as a backslash and three octal digits.
std::string Unescaped(const std::string& text) {
    std::string result;
    const auto isOctal = [&](std::size_t i) { return i < text.size() && text[i] >= '0' && text[i] <= '7'; };
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && isOctal(i + 1) && isOctal(i + 2) && isOctal(i + 3)) {
            result += static_cast<char>((text[i + 1] - '0') * 64 + (text[i + 2] - '0') * 8 + (text[i + 3] - '0'));
            i += 3;
        } else {
            result += text[i];
        }
    }
    return result;
}

/// The types that hold no files of their own, as the kernel tells them.
std::set<std::string> PseudoTypes(const SystemFiles& files) {
    // Without devices, but with files that are worth looking at.
    static const std::set<std::string> kReal{"overlay", "tmpfs",    "nfs", "nfs4", "cifs", "smb3",
                                             "9p",      "virtiofs", "zfs", "ceph", "fuse"};
    std::set<std::string> types;
    for (const auto& line : files.Lines("proc/filesystems")) {
        const auto words = Words(line);
        if (words.size() == 2 && words[0] == "nodev" && kReal.count(words[1]) == 0) {
            types.insert(words[1]);
        }
    }
    return types;
}

bool IsBelow(const std::string& path, const std::string& folder) {
    return path == folder || path.rfind(folder + '/', 0) == 0;
}

/// The real file systems; the one that is mounted last where several are at one path, because it hides the others.
std::vector<Mount> Mounts(const SystemFiles& files) {
    const auto pseudo = PseudoTypes(files);
    std::map<std::string, Mount> byPath;
    for (const auto& line : files.Lines("proc/mounts")) {
        const auto words = Words(line);
        if (words.size() < 4) {
            continue;
        }
        const Mount mount{Unescaped(words[0]), Unescaped(words[1]), words[2], words[3]};
        const bool isReal = pseudo.count(mount.type) == 0 && !IsBelow(mount.path, "/proc") &&
                            !IsBelow(mount.path, "/sys") && !IsBelow(mount.path, "/dev");
        if (isReal || mount.path == "/") {
            byPath[mount.path] = mount;
        }
    }
    // Where the list of mounts is not to be had, there is a root all the same.
    byPath.emplace("/", Mount{"", "/", "", "rw"});
    std::vector<Mount> mounts;
    mounts.reserve(byPath.size());
    for (const auto& [path, mount] : byPath) {
        mounts.push_back(mount);
    }
    return mounts;
}

std::vector<std::string> SplitAtCommas(const std::string& text) {
    std::string spaced = text;
    std::replace(spaced.begin(), spaced.end(), ',', ' ');
    return Words(spaced);
}

void SetSpace(Instance& instance, const struct statvfs& space) {
    constexpr std::uint64_t kWhole = 100;
    auto& values = instance.values;
    const std::uint64_t unit = space.f_frsize;
    const std::uint64_t used = space.f_blocks - space.f_bfree;
    values["BlockSize"] = Value::Number(unit);
    values["FileSystemSize"] = Value::Number(unit * space.f_blocks);
    values["AvailableSpace"] = Value::Number(unit * space.f_bavail);
    values["MaxFileNameLength"] = Value::Number(space.f_namemax);
    if (space.f_files != 0) {
        values["NumberOfFiles"] = Value::Number(space.f_files);
        values["FreeFiles"] = Value::Number(space.f_ffree);
    }
    // Of what ordinary users can have, as df says it.
    if (used + space.f_bavail != 0) {
        values["PercentInUse"] = Value::Number(used * kWhole / (used + space.f_bavail));
    }
}

bool IsCaseSensitive(const std::string& type) {
    constexpr std::array kOthers{"vfat", "msdos", "exfat", "ntfs", "ntfs3", "cifs", "smb3", "hfsplus"};
    return std::find(kOthers.begin(), kOthers.end(), type) == kOthers.end();
}

} // namespace

void FileSystemProvider::Enumerate(const Visitor& visit) const {
    constexpr int kPersistent = 2;
    constexpr int kTemporary = 3;
    for (const auto& mount : Mounts(files_)) {
        Instance instance{std::string(ClassName()), {}};
        auto& values = instance.values;
        values["CSCreationClassName"] = Value::Text(kComputerSystemClass);
        values["CSName"] = Value::Text(ComputerName(files_));
        values["CreationClassName"] = Value::Text(instance.className);
        values["Name"] = Value::Text(mount.path);
        values["ElementName"] = Value::Text(mount.path);
        SetEnabled(instance);
        values["Root"] = Value::Text(mount.path);
        values["Device"] = TextOrNull(mount.device);
        values["FileSystemType"] = TextOrNull(mount.type);
        const auto options = SplitAtCommas(mount.options);
        values["MountOptions"] = TextArray(options);
        values["ReadOnly"] = Value::Boolean(std::find(options.begin(), options.end(), "ro") != options.end());
        values["CaseSensitive"] = Value::Boolean(IsCaseSensitive(mount.type));
        values["PersistenceType"] = Value::Number(mount.type == "tmpfs" ? kTemporary : kPersistent);
        struct statvfs space {};
        if (::statvfs(files_.Path(mount.path).c_str(), &space) == 0) {
            SetSpace(instance, space);
        }
        visit(instance);
    }
}

} // namespace demo
