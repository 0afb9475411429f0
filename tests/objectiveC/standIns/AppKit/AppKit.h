#pragma once

// The part of the framework's interface that applicationServicesMac.mm calls, for running that file elsewhere. The
// classes are those of standIns.mm.

#import <Foundation/Foundation.h>

typedef NSUInteger NSApplicationActivationOptions;

@interface NSRunningApplication : NSObject {
    pid_t process_;
}
+ (NSRunningApplication*)currentApplication;
+ (NSArray*)runningApplicationsWithBundleIdentifier:(NSString*)bundleIdentifier;
+ (NSRunningApplication*)runningApplicationWithProcessIdentifier:(pid_t)processIdentifier;
- (NSString*)bundleIdentifier;
- (NSURL*)executableURL;
- (pid_t)processIdentifier;
- (BOOL)activateWithOptions:(NSApplicationActivationOptions)options;
@end

@interface NSWorkspace : NSObject
+ (NSWorkspace*)sharedWorkspace;
- (NSString*)absolutePathForAppBundleWithIdentifier:(NSString*)bundleIdentifier;
@end

@interface NSScreen : NSObject
+ (NSScreen*)mainScreen;
- (CGFloat)backingScaleFactor;
@end
