unit A;
var Q: TKVAQuery;
end.
