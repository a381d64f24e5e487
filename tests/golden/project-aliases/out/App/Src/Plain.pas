unit Plain;
var Q: TKVAQuery;
end.
