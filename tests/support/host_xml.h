// An XML element as a host of this system has it, made by the system's XML library and not by ours.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace captionfx::test {

class HostXml {
public:
    HostXml();

    /// An element without children, and the document above it, which is a node and no element.
    [[nodiscard]] void* Element() const;
    [[nodiscard]] void* Document() const;

    /// What a title left in the element.
    [[nodiscard]] std::vector<std::string> ChildNames() const;
    [[nodiscard]] void* FirstChild() const;

private:
    struct Nodes;
    std::shared_ptr<Nodes> nodes_;
};

}  // namespace captionfx::test
