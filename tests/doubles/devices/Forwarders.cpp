// A cfgmgr32.dll of forwarders alone: its export list sends the two entries that know the device tree to
// the double of setupapi.dll and all others to the system's own library. It has no code.
