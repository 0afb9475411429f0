#include "tests/objectiveC/standIns.h"

#import <AppKit/AppKit.h>
#import <CoreServices/CoreServices.h>
#import <Foundation/NSDebug.h>
#import <Security/Authorization.h>

#include <unistd.h>

namespace standIns {

Script& script()
{
    static Script instance;
    return instance;
}

namespace {

int activities = 0;
int authorizations = 0;

/// Notes a call; raises, or gives false, as the script says.
bool answers(const std::string& call, const std::string& arguments = std::string())
{
    script().calls.push_back(arguments.empty() ? call : call + ' ' + arguments);
    if (call == script().raising) {
        [[[NSObject alloc] init] autorelease];
        [NSException raise:@"StandInException" format:@"%s", call.c_str()];
    }
    return call != script().nothing;
}

std::string text(NSString* string)
{
    return string ? [string UTF8String] : "nil";
}

void noteLog(NSString* message)
{
    const Pool pool;
    const std::string line = text(message);
    // Date, time, program and thread stand before the text, a line feed behind it.
    const std::size_t start = line.find("] ") + 2;
    script().calls.push_back("NSLog " + line.substr(start, line.size() - start - 1));
}

} // namespace

long liveObjects()
{
    long count = 0;
    for (Class* known = GSDebugAllocationClassList(); *known; ++known) {
        count += GSDebugAllocationCount(*known);
    }
    return count;
}

int liveActivities()
{
    return activities;
}

int liveAuthorizations()
{
    return authorizations;
}

Pool::Pool()
{
    GSDebugAllocationActive(YES);
    _NSLog_printf_handler = noteLog;
    pool_ = [[NSAutoreleasePool alloc] init];
}

Pool::~Pool()
{
    [(NSAutoreleasePool*)pool_ release];
}

} // namespace standIns

using standIns::answers;
using standIns::script;

/// What NSURL tells about the volume.
@interface StandInURL : NSObject
@end

@implementation StandInURL
- (BOOL)getResourceValue:(id*)value forKey:(NSString*)key error:(NSError**)error
{
    const std::string wanted =
        key == NSURLVolumeSupportsCaseSensitiveNamesKey ? "case-sensitive names" : "another key";
    if (!answers("getResourceValue:forKey:error:", wanted + (error ? " with error" : ""))) {
        return NO;
    }
    *value = [[[NSNumber alloc] initWithInt:1] autorelease];
    return YES;
}
@end

@interface StandInActivity : NSObject
@end

@implementation StandInActivity
- (id)init
{
    ++standIns::activities;
    return [super init];
}
- (void)dealloc
{
    --standIns::activities;
    [super dealloc];
}
@end

@implementation NSRunningApplication
+ (NSRunningApplication*)of:(pid_t)process
{
    NSRunningApplication* application = [[[self alloc] init] autorelease];
    application->process_ = process;
    return application;
}
+ (NSRunningApplication*)currentApplication
{
    return answers("currentApplication") ? [self of:7] : nil;
}
+ (NSArray*)runningApplicationsWithBundleIdentifier:(NSString*)bundleIdentifier
{
    if (!answers("runningApplicationsWithBundleIdentifier:", standIns::text(bundleIdentifier))) {
        return nil;
    }
    if (!bundleIdentifier) {
        return [NSArray array];
    }
    NSRunningApplication* other = script().otherProcess ? [self of:script().otherProcess] : nil;
    return [NSArray arrayWithObjects:[self of:7], other, nil];
}
+ (NSRunningApplication*)runningApplicationWithProcessIdentifier:(pid_t)processIdentifier
{
    return answers("runningApplicationWithProcessIdentifier:", std::to_string(processIdentifier))
               ? [self of:processIdentifier]
               : nil;
}
- (NSString*)bundleIdentifier
{
    return answers("bundleIdentifier") ? [NSString stringWithFormat:@"org.%@", @"example"] : nil;
}
- (NSURL*)executableURL
{
    return answers("executableURL") ? (NSURL*)[[[StandInURL alloc] init] autorelease] : nil;
}
- (pid_t)processIdentifier
{
    return answers("processIdentifier") ? process_ : -1;
}
- (BOOL)activateWithOptions:(NSApplicationActivationOptions)options
{
    return answers("activateWithOptions:", std::to_string(options) + " of " + std::to_string(process_));
}
@end

@implementation NSWorkspace
+ (NSWorkspace*)sharedWorkspace
{
    return answers("sharedWorkspace") ? [[[self alloc] init] autorelease] : nil;
}
- (NSString*)absolutePathForAppBundleWithIdentifier:(NSString*)bundleIdentifier
{
    return answers("absolutePathForAppBundleWithIdentifier:", standIns::text(bundleIdentifier))
               ? [NSString stringWithFormat:@"/Applications/%@.app", bundleIdentifier]
               : nil;
}
@end

@implementation NSScreen
+ (NSScreen*)mainScreen
{
    return answers("mainScreen") ? [[[self alloc] init] autorelease] : nil;
}
- (CGFloat)backingScaleFactor
{
    return answers("backingScaleFactor") ? 2 : 0;
}
@end

// Foundation's own activities do nothing.
#pragma clang diagnostic ignored "-Wobjc-protocol-method-implementation"

@interface NSProcessInfo (StandIn)
@end

@implementation NSProcessInfo (StandIn)
- (BOOL)respondsToSelector:(SEL)selector
{
    const bool isActivity = sel_isEqual(selector, @selector(beginActivityWithOptions:reason:)) ||
                            sel_isEqual(selector, @selector(endActivity:));
    return isActivity ? script().hasActivities : [super respondsToSelector:selector];
}
- (id)beginActivityWithOptions:(NSActivityOptions)options reason:(NSString*)reason
{
    id activity = [[[StandInActivity alloc] init] autorelease];
    return answers("beginActivityWithOptions:reason:", std::to_string(options) + " " + standIns::text(reason))
               ? activity
               : nil;
}
- (void)endActivity:(id)activity
{
    answers("endActivity:", object_getClassName(activity));
}
@end

OSErr Gestalt(OSType selector, SInt32* response)
{
    // The order of the three is checked where the helpers' decisions are.
    *response = selector == 'sys1' ? 10 : selector == 'sys2' ? 13 : 6;
    return "Gestalt" == script().nothing ? -5551 : 0;
}

OSStatus AuthorizationCreate(const AuthorizationRights* rights, const AuthorizationEnvironment* environment,
                             AuthorizationFlags flags, AuthorizationRef* authorization)
{
    const AuthorizationItem& right = rights->items[0];
    const bool isPlain =
        rights->count == 1 && !environment && right.valueLength == 0 && !right.value && right.flags == 0;
    if (!answers("AuthorizationCreate",
                 right.name + std::string(isPlain ? " " : " and more ") + std::to_string(flags))) {
        *authorization = AuthorizationRef(script().failedAuthorization);
        standIns::authorizations += script().failedAuthorization != nullptr;
        return -60006;
    }
    ++standIns::authorizations;
    *authorization = AuthorizationRef(&standIns::authorizations);
    return 0;
}

OSStatus AuthorizationFree(AuthorizationRef authorization, AuthorizationFlags flags)
{
    answers("AuthorizationFree", std::to_string(flags) + (authorization ? "" : " of nothing"));
    --standIns::authorizations;
    return 0;
}

OSStatus AuthorizationExecuteWithPrivileges(AuthorizationRef authorization, const char* pathToTool,
                                            AuthorizationFlags options, char* const* arguments,
                                            FILE** communicationsPipe)
{
    std::string command = pathToTool;
    std::vector<char*> vector = {&command[0]};
    std::string noted =
        command + (authorization && !communicationsPipe ? " " : " wrongly ") + std::to_string(options);
    for (; *arguments; ++arguments) {
        noted += std::string(" ") + *arguments;
        vector.push_back(*arguments);
    }
    vector.push_back(nullptr);
    if (!answers("AuthorizationExecuteWithPrivileges", noted)) {
        return -60031;
    }
    if (fork() == 0) {
        execv(pathToTool, vector.data());
        _exit(127);
    }
    return 0;
}
