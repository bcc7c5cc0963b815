// Keeps a subsystem library that has no sources yet linkable.
