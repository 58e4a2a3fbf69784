#pragma once

namespace velcoran::sqlite {

/// Name of the file system (VFS, in the database's words) through which the provider opens its files. It is the
/// database's own, read-only as it is used here, but for two things:
///
/// - Nothing is mapped into memory: a mapped file that another program cuts ends the process. The index of a
/// write-ahead
///   log, which is shared memory otherwise, is kept by each connection for itself; what keeps writers from taking the
///   log away meanwhile are the locks that readers hold in any case.
/// - A page that lies behind the end of the file is an error. The database takes it for zeros, which would be a wrong
///   text where the rest of a long text lay.
///
/// Registered with the first call, for the life of the process.
/// @throws Error kProviderFailure
[[nodiscard]] const char* fileSystemName();

}  // namespace velcoran::sqlite
