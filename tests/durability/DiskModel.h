#pragma once

#include "tests/durability/SystemCallTap.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <utility>

namespace MirrowvaleAuthenticator {

/// What a disk may hold after a power cut, as little as a POSIX file system promises:
/// bytes of a file are safe once the file was flushed, before that any first part of them may be there, or
/// zeros in their place; a name's coming, going or change of meaning is safe once its folder was flushed,
/// before that each may be there without the others.
class DiskModel {
public:
    /// Files with their bytes and folders (nothing), by path below the root.
    using Content = std::optional<std::string>;
    using Tree = std::map<std::string, Content>;

    /// A disk that safely holds what `rootFolder` holds now.
    explicit DiskModel(const std::filesystem::path& rootFolder)
        : root(std::filesystem::canonical(rootFolder).string() + "/")
    {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
            nodes[find(relative(entry.path().parent_path()))].safeNames[entry.path().filename()] =
                nodes.size();
            nodes.push_back({entry.is_directory()});
            if (std::ifstream file(entry.path(), std::ios::binary); !entry.is_directory()) {
                nodes.back().bytes.assign(std::istreambuf_iterator<char>(file), {});
                nodes.back().safeSize = nodes.back().bytes.size();
            }
        }
    }

    /// Follows a call that succeeded; those outside of the root are passed over.
    void apply(const SystemCall& call)
    {
        if (!(call.path + "/").starts_with(root)) {
            return;
        }
        const auto path = relative(call.path);
        const auto folder = find(path.parent_path());
        switch (call.kind) {
        case SystemCall::Kind::create:
        case SystemCall::Kind::makeFolder:
            unsafeChanges.push_back({folder, path.filename(), nodes.size()});
            nodes.push_back({call.kind == SystemCall::Kind::makeFolder});
            break;
        case SystemCall::Kind::write:
            nodes[find(path)].bytes += call.text;
            break;
        case SystemCall::Kind::rename: // within one folder
            unsafeChanges.push_back({folder, relative(call.text).filename(), find(path), path.filename()});
            break;
        case SystemCall::Kind::remove:
            unsafeChanges.push_back({folder, path.filename()});
            break;
        case SystemCall::Kind::flush:
            flush(find(path));
            break;
        case SystemCall::Kind::other:
            break;
        }
    }

    /// Hands over each tree that may be found if the power were cut now.
    void forEachState(const std::function<void(const Tree&)>& visit) const
    {
        if (unsafeChanges.size() > 16) {
            throw std::length_error("too many unsafe changes to try each choice of them");
        }
        for (std::size_t done = 0; done < std::size_t(1) << unsafeChanges.size(); ++done) {
            Names found;
            collect(0, "", done, found);
            std::vector<Tree> trees(1);
            for (const auto& [path, node] : found) {
                std::vector<Tree> longer;
                for (const auto& content : possibleContents(nodes[node])) {
                    for (const auto& tree : trees) {
                        longer.emplace_back(tree)[path] = content;
                    }
                }
                trees = std::move(longer);
            }
            std::ranges::for_each(trees, visit);
        }
    }

private:
    using Names = std::map<std::string, std::size_t>; ///< nodes by name or path
    struct Node {
        bool isFolder = false;
        std::string bytes{};
        std::size_t safeSize = 0;
        Names safeNames{};
    };
    struct Change {
        std::size_t folder;
        std::string name;
        std::optional<std::size_t> node{}; ///< nothing: the name goes
        std::string alsoGone{}; ///< a rename's old name
    };
    static constexpr auto all = SIZE_MAX;

    std::filesystem::path relative(const std::string& path) const
    {
        return path.substr(std::min(root.size(), path.size()));
    }

    /// The names in a folder where of the unsafe changes only those whose bit is set reached the disk.
    Names names(std::size_t folder, std::size_t done) const
    {
        auto result = nodes[folder].safeNames;
        for (std::size_t number = 0; number < unsafeChanges.size(); ++number) {
            const auto& change = unsafeChanges[number];
            if (change.folder == folder && (done >> number & 1) != 0) {
                result.erase(change.alsoGone);
                result.erase(change.name);
                if (change.node) {
                    result[change.name] = *change.node;
                }
            }
        }
        return result;
    }

    /// The node that a path means to the running system.
    std::size_t find(const std::filesystem::path& path) const
    {
        std::size_t node = 0;
        for (const auto& name : path) {
            node = names(node, all).at(name);
        }
        return node;
    }

    void flush(std::size_t node)
    {
        nodes[node].safeSize = nodes[node].bytes.size();
        nodes[node].safeNames = names(node, all);
        std::erase_if(unsafeChanges, [&](const auto& change) { return change.folder == node; });
    }

    static std::set<Content> possibleContents(const Node& node)
    {
        if (node.isFolder) {
            return {Content()};
        }
        std::set<Content> found{node.bytes};
        for (const auto size : {node.safeSize, (node.safeSize + node.bytes.size()) / 2}) {
            const auto kept = node.bytes.substr(0, size);
            found.insert(kept);
            found.insert(kept + std::string(node.bytes.size() - size, '\0'));
        }
        return found;
    }

    void collect(std::size_t folder, const std::string& path, std::size_t done, Names& found) const
    {
        for (const auto& [name, node] : names(folder, done)) {
            found[path + name] = node;
            collect(node, path + name + "/", done, found);
        }
    }

    std::string root; ///< with a slash at its end
    std::vector<Node> nodes{{true}}; ///< the root first
    std::vector<Change> unsafeChanges{}; ///< in order
};

} // namespace MirrowvaleAuthenticator
