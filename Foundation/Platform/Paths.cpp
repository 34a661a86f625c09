#include "Foundation/Platform/Paths.h"

#include <algorithm>
#include <array>

#include "Foundation/Platform/Files.h"
#include "Foundation/Platform/LastError.h"

namespace zelkor::platform {

namespace {

constexpr bool IsSeparator(char16_t unit) {
    return unit == u'\\' || unit == u'/';
}

constexpr bool IsDriveLetter(char16_t unit) {
    return (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z');
}

constexpr char16_t Lower(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
}

// Appends to a caller's span; what does not fit is counted only.
class Appender {
public:
    explicit Appender(std::span<char16_t> out) : out_(out) {}
    void Add(char16_t unit) {
        if (length_ < out_.size()) out_[length_] = unit;
        ++length_;
    }
    void Add(std::u16string_view text) {
        for (const char16_t unit : text) Add(unit);
    }
    [[nodiscard]] std::size_t length() const { return length_; }

private:
    std::span<char16_t> out_;
    std::size_t length_ = 0;
};

// The absolute path as it grows: a root that ".." never leaves, and components behind it.
class AbsolutePath {
public:
    [[nodiscard]] std::u16string_view text() const { return {units_.data(), length_}; }
    [[nodiscard]] bool overflow() const { return overflow_; }

    void Append(std::u16string_view text) {
        if (text.size() > units_.size() - length_) {
            overflow_ = true;
            return;
        }
        std::ranges::copy(text, units_.data() + length_);
        std::replace(units_.data() + length_, units_.data() + length_ + text.size(), u'/', u'\\');
        length_ += text.size();
    }
    void EndRoot() { root_ = length_; }
    void KeepRoot() { length_ = root_; }

    // A component that something follows, or (`last`) the path's end.
    void AddComponent(std::u16string_view name, bool last) {
        if (name == u".." || name == u"." || name.empty()) {
            if (name == u"..") Leave();
            if (last && name.size() > 0) DropSeparator();
            return;
        }
        Append(name);
        if (!last) Append(u"\\");
    }

private:
    // Goes back to behind the separator before the last component.
    void Leave() {
        if (length_ == root_) return;
        --length_;
        while (length_ > root_ && units_[length_ - 1] != u'\\') --length_;
    }
    void DropSeparator() {
        if (length_ > root_ && units_[length_ - 1] == u'\\') --length_;
    }

    std::array<char16_t, 2 * kMaxNativePath> units_;
    std::size_t length_ = 0;
    std::size_t root_ = 0;
    bool overflow_ = false;
};

void AddComponents(AbsolutePath& path, std::u16string_view rest) {
    for (;;) {
        const std::size_t end = rest.find_first_of(u"\\/");
        if (end == rest.npos) break;
        path.AddComponent(rest.substr(0, end), false);
        rest.remove_prefix(end + 1);
    }
    path.AddComponent(rest, true);
}

// The current folder of a drive as the beginning of a path, with a separator behind it.
bool AppendFolder(AbsolutePath& path, std::uint32_t drive) {
    std::array<char16_t, kMaxNativePath> folder;
    const std::size_t length = CurrentFolder(drive, folder);
    if (length == 0) return false;
    path.Append({folder.data(), 3});
    path.EndRoot();
    path.Append({folder.data() + 3, length - 3});
    if (length > 3) path.Append(u"\\");
    return true;
}

// "\\server\share\", "\\?\" or "\\.\": the root is as far as ".." goes.
void AppendNetworkRoot(AbsolutePath& path, std::u16string_view* rest) {
    const std::u16string_view given = *rest;
    std::size_t end = 4;
    if (given.size() >= 4 && (given[2] == u'?' || given[2] == u'.') && IsSeparator(given[3])) {
        if (given.size() >= 7 && given[5] == u':' && IsSeparator(given[6])) end = 7;
    } else {
        end = given.find_first_of(u"\\/", 2);
        if (end != given.npos) end = given.find_first_of(u"\\/", end + 1);
        end = end == given.npos ? given.size() : end + 1;
    }
    path.Append(given.substr(0, end));
    path.EndRoot();
    rest->remove_prefix(end);
}

// Everything in front of the components that `rest` then holds; false without a current folder.
bool AppendStart(AbsolutePath& path, std::u16string_view* rest) {
    const auto drop = [rest](std::size_t count) { rest->remove_prefix(count); };
    if (rest->size() >= 2 && IsSeparator((*rest)[0]) && IsSeparator((*rest)[1])) {
        AppendNetworkRoot(path, rest);
        return true;
    }
    if (rest->size() >= 2 && IsDriveLetter((*rest)[0]) && (*rest)[1] == u':') {
        const char16_t letter = (*rest)[0];
        const bool rooted = rest->size() > 2 && IsSeparator((*rest)[2]);
        if (rooted) {
            path.Append(rest->substr(0, 3));
            path.EndRoot();
            drop(3);
            return true;
        }
        drop(2);
        return AppendFolder(path, static_cast<std::uint32_t>(Lower(letter) - u'a' + 1));
    }
    if (!AppendFolder(path, 0)) return false;
    if (!rest->empty() && IsSeparator(rest->front())) {
        path.KeepRoot();
        drop(1);
    } else if (rest->empty()) {
        *rest = u".";
    }
    return true;
}

}  // namespace

PathParts SplitPath(std::u16string_view path) noexcept {
    PathParts parts;
    const std::size_t drive = path.size() >= 2 && path[1] == u':' ? 2 : 0;
    parts.drive = path.substr(0, drive);
    path.remove_prefix(drive);
    const std::size_t directory = path.find_last_of(u"\\/") + 1;  // npos + 1 is 0
    parts.directory = path.substr(0, directory);
    path.remove_prefix(directory);
    const std::size_t period = std::min(path.rfind(u'.'), path.size());
    parts.name = path.substr(0, period);
    parts.extension = path.substr(period);
    return parts;
}

std::size_t MakePath(std::span<char16_t> out, const PathParts& parts) noexcept {
    Appender path(out);
    if (!parts.drive.empty()) {
        path.Add(parts.drive.front());
        path.Add(u':');
    }
    path.Add(parts.directory);
    if (!parts.directory.empty() && !IsSeparator(parts.directory.back())) path.Add(u'\\');
    path.Add(parts.name);
    if (!parts.extension.empty() && parts.extension.front() != u'.') path.Add(u'.');
    path.Add(parts.extension);
    if (path.length() < out.size()) out[path.length()] = u'\0';
    return path.length();
}

std::size_t FullPath(const char16_t* given, std::span<char16_t> out) noexcept {
    std::u16string_view rest = given == nullptr ? u"" : given;
    AbsolutePath path;
    if (!AppendStart(path, &rest)) return 0;
    AddComponents(path, rest);
    if (path.overflow() || path.text().size() >= out.size()) {
        SetLastError(kErrorFilenameExceedsRange);
        return 0;
    }
    std::ranges::copy(path.text(), out.data());
    out[path.text().size()] = u'\0';
    return path.text().size();
}

}  // namespace zelkor::platform
