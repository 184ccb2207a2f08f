#pragma once

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
        for (const Entry& entry : entries)
        {
            Insert(entry);
        }
    }

    /// The child of a node, kNowhere when the table has none of that name.
    Node Child(Node node, std::string_view name) const
    {
        for (const Node child : m_nodes[node].children)
        {
            if (m_nodes[child].name == name)
            {
                return child;
            }
        }
        return kNowhere;
    }

    Node Parent(Node node) const { return m_nodes[node].parent; }
    Field FieldOf(Node node) const { return m_nodes[node].field; }

private:
    struct Element
    {
        std::string name;
        Field field{};
        Node parent = kRoot;
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
        m_nodes.emplace_back();
        m_nodes.back().name = name;
        m_nodes.back().parent = node;
        m_nodes[node].children.push_back(added);
        return added;
    }

    std::vector<Element> m_nodes;
};

} // namespace engine
