#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace engine
{

/// Which element stands where: a tree of local names, walked as a document is read. What the table
/// does not name is passed over with everything in it.
template <typename Field>
class PathTable
{
public:
    struct Entry
    {
        std::string path; ///< names joined by '/', from the message element's child on
        Field field;
    };

    using Node = std::uint32_t;
    static constexpr Node kRoot = 0;
    static constexpr Node kNowhere = 0xFFFFFFFFU;

    explicit PathTable(const std::vector<Entry>& entries)
    {
        m_nodes.emplace_back();
        m_names.emplace_back();
        for (const Entry& entry : entries)
        {
            Insert(entry);
        }
    }

    /// The child of a node, kNowhere when the table has none of that name.
    Node Child(Node node, std::string_view name) const
    {
        for (const Node child : m_names[node].children)
        {
            if (m_names[child].name == name)
            {
                return child;
            }
        }
        return kNowhere;
    }

    Node Parent(Node node) const { return m_nodes[node].parent; }
    Field FieldOf(Node node) const { return m_nodes[node].field; }

private:
    // What each element of a document asks for, kept close together.
    struct Place
    {
        Node parent = kRoot;
        Field field{};
    };

    struct Names
    {
        std::string name;
        std::vector<Node> children;
    };

    void Insert(const Entry& entry)
    {
        Node node = kRoot;
        std::string_view rest = entry.path;
        while (!rest.empty())
        {
            const std::size_t end = rest.find('/');
            const std::string_view name = rest.substr(0, end);
            rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1U);
            node = ChildOrNew(node, name);
        }
        m_nodes[node].field = entry.field;
    }

    Node ChildOrNew(Node node, std::string_view name)
    {
        if (const Node child = Child(node, name); child != kNowhere)
        {
            return child;
        }
        const auto added = static_cast<Node>(m_nodes.size());
        m_nodes.push_back({node, Field{}});
        m_names.push_back({std::string(name), {}});
        m_names[node].children.push_back(added);
        return added;
    }

    std::vector<Place> m_nodes;
    std::vector<Names> m_names; // of the same nodes
};

/// The children of a table's nodes for names that each have one address, as those of a document
/// that is being read: a name seen before at a node is not compared again.
template <typename Field>
class ChildMemo
{
public:
    using Table = PathTable<Field>;
    using Node = typename Table::Node;

    explicit ChildMemo(const Table& table) : m_table(table) {}

    Node Child(Node node, const char* name)
    {
        Known& known = m_known[(reinterpret_cast<std::uintptr_t>(name) + node * kSpread) % kKnown];
        if (known.name != name || known.node != node)
        {
            known = {name, node, m_table.Child(node, name)};
        }
        return known.child;
    }

private:
    struct Known
    {
        const char* name = nullptr;
        Node node = Table::kRoot;
        Node child = Table::kNowhere;
    };

    static constexpr std::size_t kKnown = 256;
    static constexpr Node kSpread = 7;

    const Table& m_table;
    std::array<Known, kKnown> m_known{};
};

} // namespace engine
