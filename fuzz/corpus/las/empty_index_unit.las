~Version
 VERS.   3 :
 WRAP.   NO  :
~Well
 NULL.  -9999 :
~Curve Information
Index              .                                       :  {F}
Bottom             .ft                                     :  {F}
~Ascii
0          5725.966
1          15070.08
2          15152.6
