~Version
 VERS.   2.0 :
 WRAP.   NO  :
~Well
 NULL.  -999.25 :
~Curve
 DEPT.M                                 : depth
 GR  .GAPI                              : mean gamma ray
 gr  .GAPI                              : corrected gamma ray
 MWD_EQUIVALENT_CIRCULATION_DENSITY.PPG : a mnemonic of 34 characters
 .OHMM                                  : a curve without a mnemonic
 GR  .GAPI                              : a third gamma ray
~A
 50.0  10.0  11.0  9.5  2.0  12.0
 50.5  20.0  21.0  9.6  2.1  22.0
