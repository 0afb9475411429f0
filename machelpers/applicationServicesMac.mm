// Manual reference counting: the activity is retained and released by the helpers, and a path outlives its call.

#include "machelpers/applicationServices.h"

#import <AppKit/AppKit.h>
#import <CoreServices/CoreServices.h>
#import <Foundation/Foundation.h>
#import <Security/Authorization.h>
#import <Security/AuthorizationTags.h>

#if defined(__clang__)
#if __has_feature(objc_arc)
#error "This file is written for manual reference counting (-fno-objc-arc)"
#endif
#pragma clang diagnostic ignored "-Wunguarded-availability"
#endif
// Gestalt, AuthorizationExecuteWithPrivileges and the bundle look-up have no successor on the oldest system we run on.
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace norvex {

namespace {

/// The result of a call, or @p failed when it raises an exception.
template <typename Result, typename Call>
Result guarded(Result failed, Call call)
{
    Result result = failed;
    @try {
        result = call();
    } @catch (...) {
        return failed;
    }
    return result;
}

/// A call without a result.
template <typename Call>
void guarded(Call call)
{
    @try {
        call();
    } @catch (...) {
    }
}

/// Null for bytes that are not UTF-8.
NSString* platformString(const char* text)
{
    return [[[NSString alloc] initWithCString:text encoding:NSUTF8StringEncoding] autorelease];
}

NSRunningApplication* platformApplication(RunningApplication application)
{
    return (NSRunningApplication*)static_cast<std::uintptr_t>(application);
}

class MacApplicationServices : public ApplicationServices
{
public:
    std::int16_t gestalt(SystemVersionPart part, std::int32_t& value) override
    {
        SInt32 response = 0;
        const OSErr result = Gestalt(static_cast<OSType>(part), &response);
        value = response;
        return result;
    }

    PlatformObject createPool() override
    {
        return guarded(PlatformObject(), [] { return (PlatformObject)[[NSAutoreleasePool alloc] init]; });
    }

    void drainPool(PlatformObject pool) noexcept override
    {
        guarded([&] { [(NSAutoreleasePool*)pool release]; });
    }

    std::vector<RunningApplication> runningInstances() override
    {
        return guarded(std::vector<RunningApplication>(), [] {
            NSString* identifier = [[NSRunningApplication currentApplication] bundleIdentifier];
            NSArray* found = [NSRunningApplication runningApplicationsWithBundleIdentifier:identifier];
            std::vector<RunningApplication> instances;
            for (NSUInteger index = 0; index < [found count]; ++index) {
                instances.push_back(RunningApplication((std::uintptr_t)[found objectAtIndex:index]));
            }
            return instances;
        });
    }

    std::int32_t processIdentifier(RunningApplication application) override
    {
        return guarded(-1, [&] { return [platformApplication(application) processIdentifier]; });
    }

    std::int32_t currentProcessIdentifier() override
    {
        return guarded(-1, [] { return [[NSRunningApplication currentApplication] processIdentifier]; });
    }

    bool activate(RunningApplication application) override
    {
        return guarded(false, [&] {
            // NSApplicationActivateIgnoringOtherApps. Whether the other application follows is its own affair.
            [platformApplication(application) activateWithOptions:(NSApplicationActivationOptions)2];
            return true;
        });
    }

    bool isApplicationRunning(std::int32_t processIdentifier) override
    {
        return guarded(false, [&] {
            return [NSRunningApplication runningApplicationWithProcessIdentifier:processIdentifier] != nil;
        });
    }

    bool executableVolumeCaseSensitivity(int& value) override
    {
        return guarded(false, [&] {
            id number = nil;
            NSURL* executable = [[NSRunningApplication currentApplication] executableURL];
            const bool found = [executable getResourceValue:&number
                                                     forKey:NSURLVolumeSupportsCaseSensitiveNamesKey
                                                      error:nullptr];
            value = [(NSNumber*)number intValue];
            return found;
        });
    }

    const char* applicationPath(const char* identifier) override
    {
        return guarded(static_cast<const char*>(nullptr), [&] {
            NSWorkspace* workspace = [NSWorkspace sharedWorkspace];
            return [[workspace absolutePathForAppBundleWithIdentifier:platformString(identifier)] UTF8String];
        });
    }

    bool fileExists(const char* path) override
    {
        return guarded(false, [&] {
            return bool([[NSFileManager defaultManager] fileExistsAtPath:platformString(path)]);
        });
    }

    bool propertyListString(const char* path, const char* keyPath, std::string& text) override
    {
        return guarded(false, [&] {
            NSDictionary* root = [NSDictionary dictionaryWithContentsOfFile:platformString(path)];
            id value = [root valueForKeyPath:platformString(keyPath)];
            const char* bytes =
                [value isKindOfClass:[NSString class]] ? [(NSString*)value UTF8String] : nullptr;
            if (bytes) {
                text = bytes;
            }
            return bytes != nullptr;
        });
    }

    std::int32_t createAuthorization(PlatformObject& authorization) override
    {
        AuthorizationItem right = {kAuthorizationRightExecute, 0, nullptr, 0};
        const AuthorizationRights rights = {1, &right};
        AuthorizationRef created = nullptr;
        const OSStatus status =
            AuthorizationCreate(&rights, kAuthorizationEmptyEnvironment,
                                kAuthorizationFlagInteractionAllowed | kAuthorizationFlagExtendRights |
                                    kAuthorizationFlagPreAuthorize,
                                &created);
        authorization = (PlatformObject)created;
        return status;
    }

    std::int32_t executeWithPrivileges(PlatformObject authorization, const char* toolPath,
                                       char* const* arguments, ToolUse) override
    {
        return AuthorizationExecuteWithPrivileges((AuthorizationRef)authorization, toolPath,
                                                  kAuthorizationFlagDefaults, arguments, nullptr);
    }

    void freeAuthorization(PlatformObject authorization) noexcept override
    {
        AuthorizationFree((AuthorizationRef)authorization, kAuthorizationFlagDestroyRights);
    }

    bool canBeginActivity() override
    {
        return guarded(false, [] {
            SEL selector = @selector(beginActivityWithOptions:reason:);
            return bool([[NSProcessInfo processInfo] respondsToSelector:selector]);
        });
    }

    bool canEndActivity() override
    {
        return guarded(false, [] {
            return bool([[NSProcessInfo processInfo] respondsToSelector:@selector(endActivity:)]);
        });
    }

    PlatformObject beginActivity(const char* reason) override
    {
        return guarded(PlatformObject(), [&] {
            // NSActivityUserInitiated as it was first defined.
            const NSActivityOptions options = (NSActivityOptions)0x00FFFFFFULL;
            NSString* text = [[[NSString alloc] initWithUTF8String:reason] autorelease];
            return (PlatformObject)[[NSProcessInfo processInfo] beginActivityWithOptions:options reason:text];
        });
    }

    void endActivity(PlatformObject activity) noexcept override
    {
        guarded([&] { [[NSProcessInfo processInfo] endActivity:(id)activity]; });
    }

    void retain(PlatformObject object) noexcept override
    {
        guarded([&] { [(id)object retain]; });
    }

    void release(PlatformObject object) noexcept override
    {
        guarded([&] { [(id)object release]; });
    }

    double mainScreenScaleFactor() override
    {
        return guarded(0.0, [] { return double([[NSScreen mainScreen] backingScaleFactor]); });
    }

    void log(const char* message) override
    {
        guarded([&] { NSLog(@"%s", message); });
    }
};

} // namespace

ApplicationServices& platformApplicationServices()
{
    static MacApplicationServices services;
    return services;
}

} // namespace norvex
