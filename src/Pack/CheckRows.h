// The checks of tavixpack: TVX_CHECK(id, name, severity, what is wrong). The manual, docs/checks.md, has an entry for
// each under its name.

// Files, sections, settings.
TVX_CHECK(MissingInclude, "missing-include", EError, "a script file that the package names and does not have")
TVX_CHECK(PathWithoutFolder, "path-without-folder", EError, "a script file that Windows looks for in its own folder")
TVX_CHECK(WrongVersion, "wrong-version", EError, "a Version that ends every run")
TVX_CHECK(WrongPrefType, "wrong-pref-type", EError, "a PrefType that ends every run")
TVX_CHECK(UnknownSetting, "unknown-setting", EWarning, "a key of MAIN that the program does not know")
TVX_CHECK(UnknownLanguage, "unknown-language", EWarning, "a language that the program does not know")
TVX_CHECK(MissingLanguage, "missing-language", EError, "a language of the run without words")
TVX_CHECK(SectionTooLong, "section-too-long", EError, "a section that is cut when it is read")
TVX_CHECK(ValueTooLong, "value-too-long", EError, "a value or path that is longer than what takes it")
TVX_CHECK(WrongCodePage, "wrong-code-page", EError, "text that the code page of its language does not have")
TVX_CHECK(SplitCharacter, "split-character", EError, "a character whose second byte is read as a back-slash")
TVX_CHECK(MachineLetters, "machine-letters", EWarning, "letters in a step that differ from machine to machine")
TVX_CHECK(DuplicateSection, "duplicate-section", EError, "a second section of a name, which is never read")
TVX_CHECK(DuplicateKey, "duplicate-key", EWarning, "a second key of a name, which is never read")
TVX_CHECK(ShadowedGroup, "shadowed-group", EWarning, "a group that another file's group of the name hides")
TVX_CHECK(StrayLine, "stray-line", EWarning, "a line in front of the first section")

// Steps and their fields.
TVX_CHECK(UnknownCommand, "unknown-command", EError, "a word that is no command")
TVX_CHECK(MissingField, "missing-field", EError, "a field that the command cannot do without")
TVX_CHECK(ExtraField, "extra-field", EWarning, "a field that the command does not look at")
TVX_CHECK(BadNumber, "bad-number", EError, "a number that is none, or out of its bounds")
TVX_CHECK(BadPermissions, "bad-permissions", EError, "permissions that the program does not know")
TVX_CHECK(BadRoot, "bad-root", EError, "a registry root that is spelled wrong or stands alone")
TVX_CHECK(BadVersion, "bad-version", EError, "a version of Windows that no Windows has")
TVX_CHECK(BlankInField, "blank-in-field", EWarning, "a blank that belongs to a field by mistake")
TVX_CHECK(FlagNeverSet, "flag-never-set", EWarning, "a flag that is tested and set nowhere")
TVX_CHECK(FlagNeverRead, "flag-never-read", EWarning, "a flag that is set and tested nowhere")
TVX_CHECK(CompanionKind, "companion-kind", EError, "a companion of the kind that the command cannot use")
TVX_CHECK(BreakLeft, "break-left", EWarning, "a Break in a package that is delivered")

// Labels, jumps, groups.
TVX_CHECK(BadTarget, "bad-target", EError, "a target that is neither a label nor a group")
TVX_CHECK(MissingLabel, "missing-label", EError, "a jump to a label that no line has")
TVX_CHECK(DuplicateLabel, "duplicate-label", EError, "a label that stands twice")
TVX_CHECK(UnusedLabel, "unused-label", EWarning, "a label that nothing jumps to")
TVX_CHECK(LabelAlone, "label-alone", EError, "a label without a step, which ends the group")
TVX_CHECK(UnreachableStep, "unreachable-step", EWarning, "a step that nothing reaches")
TVX_CHECK(MissingGroup, "missing-group", EError, "a group that no script file has")
TVX_CHECK(MissingScript, "missing-script", EWarning, "a call in a script file that the package does not have")
TVX_CHECK(EmptyGroup, "empty-group", EWarning, "a group without a step")
TVX_CHECK(UnusedGroup, "unused-group", EWarning, "a group that no run reaches")
TVX_CHECK(EndlessGroup, "endless-group", EError, "a group that calls itself without a way out")
TVX_CHECK(EndlessJump, "endless-jump", EError, "a jump back without a way out")

// Escapes, macros, words.
TVX_CHECK(EscapeInPath, "escape-in-path", EError, "a back-slash of a path that became a control character")
TVX_CHECK(LostBackslash, "lost-backslash", EError, "a back-slash that is dropped")
TVX_CHECK(UnpairedMark, "unpaired-mark", EError, "a ! or ^ without its partner")
TVX_CHECK(UnknownMacro, "unknown-macro", EError, "a macro that means nothing")
TVX_CHECK(UnexpandedMacro, "unexpanded-macro", EWarning, "a macro in a field that is taken as it stands")
TVX_CHECK(UnknownPlatformName, "unknown-platform-name", EError, "a name of a key that PlatformData does not have")
TVX_CHECK(MissingWord, "missing-word", EError, "a ^word^ that a language lacks")
TVX_CHECK(MissingPageWord, "missing-page-word", EError, "a word of the window that a language lacks")
TVX_CHECK(TextDoesNotFit, "text-does-not-fit", EWarning, "a text of the window that its place does not hold")

// Files of the package and of the machine.
TVX_CHECK(MissingSource, "missing-source", EError, "a file that the step reads and the package does not have")
TVX_CHECK(OtherCase, "other-case", EWarning, "a file whose name is written in another case")
TVX_CHECK(ForeignTarget, "foreign-target", EWarning, "a place that is not the package's own")
TVX_CHECK(BareName, "bare-name", EError, "a folder that is not made because its path has no beginning")
TVX_CHECK(RelativeInf, "relative-inf", EError, "an INF file without a whole path")
TVX_CHECK(CopyOntoItself, "copy-onto-itself", EError, "a file that is lost because it is copied onto itself")
TVX_CHECK(MissingForRemoval, "missing-for-removal", EError, "a file that the removal needs and Install leaves out")

// The two views of 64-bit Windows.
TVX_CHECK(TestedView, "tested-view", EError, "a value that is tested in a view that it is not written in")
TVX_CHECK(DeletedView, "deleted-view", EError, "a value that is deleted in a view that it is not written in")
TVX_CHECK(FileView, "file-view", EError, "a file that is deleted or tested in another view than it is written in")
TVX_CHECK(MixedView, "mixed-view", EWarning, "a command that reads one view and writes the other")
TVX_CHECK(RootInTest, "root-in-test", EError, "a tested key that is never found")
TVX_CHECK(PermissionsView, "permissions-view", EWarning, "permissions of a key that Windows looks for elsewhere")

// What is brought, left and taken.
TVX_CHECK(LeftFile, "left-file", EWarning, "a file that Uninstall leaves")
TVX_CHECK(LeftFolder, "left-folder", EWarning, "a folder that Uninstall leaves")
TVX_CHECK(LeftValue, "left-value", EWarning, "a value of the registry that Uninstall leaves")
TVX_CHECK(LeftLink, "left-link", EWarning, "a shortcut that Uninstall leaves")
TVX_CHECK(LeftEntry, "left-entry", EWarning, "what ProcessXMLData registers and nothing takes back")
TVX_CHECK(LeftService, "left-service", EWarning, "a service that is started and never stopped")
TVX_CHECK(LeftDriver, "left-driver", EWarning, "a driver that Uninstall leaves")
TVX_CHECK(NeverBrought, "never-brought", EWarning, "something that Uninstall takes and nothing brings")

// The comments that silence a check.
TVX_CHECK(UnknownCheck, "unknown-check", EError, "an allowed check that does not exist")
TVX_CHECK(UnusedAllow, "unused-allow", EWarning, "an allowed check that finds nothing there")
