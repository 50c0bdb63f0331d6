#include "FileEvents.h"

#include "CoreFoundationText.h"
#include "support/MainThread.h"

#import <CoreServices/CoreServices.h>
#import <Foundation/Foundation.h>

#include <array>
#include <filesystem>
#include <utility>

namespace wakeloft {

struct FileEvents::Stream {
    FSEventStreamRef stream;

    ~Stream() {
        FSEventStreamStop(stream);
        FSEventStreamInvalidate(stream);
        FSEventStreamRelease(stream);
    }
};

FileEvents::FileEvents(std::function<void()> changed) : changed_(std::move(changed)) {}

FileEvents::~FileEvents() {
    requireMainThread("FileEvents");
}

std::expected<std::unique_ptr<FileEvents>, PlatformError> FileEvents::watch(const std::string& path,
                                                                            std::function<void()> changed) {
    constexpr CFTimeInterval quiet = 0.5; // a file that is being replaced tells many times
    const auto unwatched =
        std::unexpected(PlatformError{"FSEvents", 0, "Changes of " + path + " cannot be followed."});
    const auto folder = coreFoundationText(std::filesystem::path(path).parent_path());
    std::array<const void*, 1> folders = {folder.get()};
    const Owned<CFArrayRef> watched(
        CFArrayCreate(kCFAllocatorDefault, folders.data(), folders.size(), &kCFTypeArrayCallBacks));
    std::unique_ptr<FileEvents> events(new FileEvents(std::move(changed)));
    // The stream does not own the events: it is stopped before they end.
    FSEventStreamContext context{0, events.get(), nullptr, nullptr, nullptr};
    const auto happened = [](ConstFSEventStreamRef, void* info, std::size_t, void*,
                             const FSEventStreamEventFlags*, const FSEventStreamEventId*) {
        requireMainThread("events of a file");
        @autoreleasepool {
            static_cast<FileEvents*>(info)->changed_();
        }
    };
    FSEventStreamRef stream = FSEventStreamCreate(
        kCFAllocatorDefault, happened, &context, watched.get(), kFSEventStreamEventIdSinceNow, quiet,
        kFSEventStreamCreateFlagNoDefer | kFSEventStreamCreateFlagWatchRoot |
            kFSEventStreamCreateFlagFileEvents);
    if (stream == nullptr)
        return unwatched;
    FSEventStreamSetDispatchQueue(stream, dispatch_get_main_queue());
    events->stream_ = std::make_unique<Stream>(stream);
    if (!FSEventStreamStart(stream))
        return unwatched;
    return events;
}

} // namespace wakeloft
