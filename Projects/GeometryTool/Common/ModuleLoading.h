#pragma once

#include <future>
#include <utility>

namespace Ovra::GeoTool
{

/// \brief A module of the host that is being loaded beside other work.
///
/// Whoever lets go of it waits until it is loaded: a process must not end while the libraries of a
/// module set themselves up.
class ModuleLoading
{
public:
    explicit ModuleLoading(std::shared_future<void> done)
        : done_(std::move(done))
    {
    }

    ~ModuleLoading()
    {
        if (done_.valid()) {
            done_.wait();
        }
    }

    ModuleLoading(ModuleLoading&&) noexcept = default;
    ModuleLoading& operator=(ModuleLoading&&) = delete;

private:
    std::shared_future<void> done_;
};

} // namespace Ovra::GeoTool
