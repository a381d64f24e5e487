object DM: TDM
    object U: TKVAUpdateSQL
  end
end













































: 